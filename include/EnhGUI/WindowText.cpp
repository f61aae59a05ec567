#include "EnhGUI/WindowText.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>

ZT_String GetWindowText(const QWidget* window)
{
    QString text;
    if (auto* edit = qobject_cast<const QLineEdit*>(window))
        text = edit->text();
    else if (auto* label = qobject_cast<const QLabel*>(window))
        text = label->text();
    else if (auto* button = qobject_cast<const QAbstractButton*>(window))
        text = button->text();
    else if (window)
        text = window->windowTitle();
    return ZT_String(text.toUtf8().constData());
}

void SetWindowText(QWidget* window, const char* text)
{
    const QString value = QString::fromUtf8(text ? text : "");
    if (auto* edit = qobject_cast<QLineEdit*>(window)) {
        edit->setText(value);
        edit->setCursorPosition(0);
    } else if (auto* label = qobject_cast<QLabel*>(window)) {
        label->setText(value);
    } else if (auto* button = qobject_cast<QAbstractButton*>(window)) {
        button->setText(value);
    } else if (window) {
        window->setWindowTitle(value);
    }
}
