// A scripted user for end-to-end tests and benchmarks, preloaded into the
// program (LD_PRELOAD). When the program's first dialog appears it plays
// the actions of ROWKEEPER_SCRIPTED_USER, separated by ";", on the active
// modal window:
//   set NAME=VALUE   fill the control of parameter NAME (edit, check box, date)
//   press CAPTION    click the button with that caption
//   close            the window's close box
//   key NAME         Escape, Return or Tab to the focused control
//   log              append caption, button states and line values to the log
//   focus            append the name of the focused control to the log
//   stamp            append the wall clock in nanoseconds to the log
//   shot FILE        save a picture of the screen (or of the window, offscreen)
//   wait MS          let the window manager and painting catch up
// The log is the file named by ROWKEEPER_SCRIPTED_LOG. A window still open
// 20 s after the last action is closed, so a wrong script cannot hang a test.
#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QDateEdit>
#include <QDialog>
#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QScreen>
#include <QTimer>

#include <time.h>

namespace {

QStringList pendingActions;
bool started = false;

QWidget* ActiveWindow()
{
    return QApplication::activeModalWidget();
}

void AppendLog(const QString& line)
{
    QFile log(qEnvironmentVariable("ROWKEEPER_SCRIPTED_LOG"));
    if (log.fileName().isEmpty() || !log.open(QIODevice::Append | QIODevice::Text))
        return;
    log.write(line.toUtf8() + "\n");
}

QString ControlValue(QWidget* control)
{
    if (auto* edit = qobject_cast<QLineEdit*>(control))
        return edit->text();
    if (auto* box = qobject_cast<QCheckBox*>(control))
        return box->isChecked() ? "[x]" : "[ ]";
    if (auto* date = qobject_cast<QDateEdit*>(control))
        return date->date().toString(Qt::ISODate);
    if (auto* label = qobject_cast<QLabel*>(control))
        return label->text();
    return {};
}

// Caption, then each push button with + (enabled) or - (disabled), then
// every named line control as name=value, in creation order.
void LogWindow(QWidget* window)
{
    QString line = window->windowTitle();
    for (QAbstractButton* button : window->findChildren<QAbstractButton*>(Qt::FindDirectChildrenOnly))
        if (!qobject_cast<QCheckBox*>(button) && button->text() != "...")
            line += QString(" %1%2").arg(button->isEnabled() ? "+" : "-", button->text());
    for (QWidget* child : window->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        const QString name = child->objectName();
        if (name.isEmpty() || name.endsWith(".label") || name.startsWith("button"))
            continue;
        line += QString(" | %1=%2").arg(name, ControlValue(child));
    }
    AppendLog(line);
}

void SetControl(QWidget* window, const QString& assignment)
{
    const QString name = assignment.section('=', 0, 0);
    const QString value = assignment.section('=', 1);
    QWidget* control = window->findChild<QWidget*>(name);
    if (auto* edit = qobject_cast<QLineEdit*>(control))
        edit->setText(value);
    else if (auto* box = qobject_cast<QCheckBox*>(control))
        box->setChecked(value != "0");
    else if (auto* date = qobject_cast<QDateEdit*>(control))
        date->setDate(QDate::fromString(value, Qt::ISODate));
    else
        AppendLog("no control " + name);
}

void PressButton(QWidget* window, const QString& caption)
{
    for (QAbstractButton* button : window->findChildren<QAbstractButton*>())
        if (button->text() == caption && button->isVisible()) {
            button->click();
            return;
        }
    AppendLog("no button " + caption);
}

void SendKey(QWidget* window, const QString& name)
{
    const int key = name == "Escape" ? Qt::Key_Escape : name == "Return" ? Qt::Key_Return : Qt::Key_Tab;
    QWidget* target = QApplication::focusWidget() ? QApplication::focusWidget() : window;
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(target, &press);
}

void TakeShot(QWidget* window, const QString& file)
{
    QScreen* screen = window->screen();
    // On a real display: the screen around the window, decorations included.
    const QRect around = window->frameGeometry().adjusted(-12, -12, 12, 12);
    QPixmap picture = QGuiApplication::platformName() == "xcb" && screen
                          ? screen->grabWindow(0, around.x(), around.y(), around.width(), around.height())
                          : window->grab();
    picture.save(file);
}

void Perform(const QString& action)
{
    QWidget* window = ActiveWindow();
    if (!window)
        return;
    const QString verb = action.section(' ', 0, 0);
    const QString argument = action.section(' ', 1);
    if (verb == "set")
        SetControl(window, argument);
    else if (verb == "press")
        PressButton(window, argument);
    else if (verb == "close")
        window->close();
    else if (verb == "key")
        SendKey(window, argument);
    else if (verb == "log")
        LogWindow(window);
    else if (verb == "focus")
        AppendLog(QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : "(none)");
    else if (verb == "stamp") {
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        AppendLog(QString::number(qint64(now.tv_sec) * 1000000000 + now.tv_nsec));
    } else if (verb == "shot")
        TakeShot(window, argument);
}

void PlayNext()
{
    if (pendingActions.isEmpty()) {
        QTimer::singleShot(20000, [] {
            if (QWidget* window = ActiveWindow()) {
                AppendLog("script ended with a window open");
                window->close();
            }
        });
        return;
    }
    const QString action = pendingActions.takeFirst().trimmed();
    Perform(action);
    const int delay = action.startsWith("wait ") ? action.section(' ', 1).toInt() : 0;
    QTimer::singleShot(delay, PlayNext);
}

class FirstDialogWatcher : public QObject {
protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (!started && event->type() == QEvent::Show && qobject_cast<QDialog*>(object)) {
            started = true;
            QTimer::singleShot(0, PlayNext);
        }
        return false;
    }
};

void StartWatching()
{
    pendingActions = qEnvironmentVariable("ROWKEEPER_SCRIPTED_USER").split(';', Qt::SkipEmptyParts);
    qApp->installEventFilter(new FirstDialogWatcher);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(StartWatching)
