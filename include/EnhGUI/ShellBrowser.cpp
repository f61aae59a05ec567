#include "EnhGUI/ShellBrowser.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QTreeView>
#include <QVBoxLayout>

ShellBrowser::ShellBrowser(QWidget* ownerWindow, const char* rootFolder, int titleResourceId)
    : owner(ownerWindow), root(rootFolder)
{
    SetTitle(titleResourceId);
}

ShellBrowser::ShellBrowser(QWidget* ownerWindow, const char* rootFolder, const char* text)
    : owner(ownerWindow), root(rootFolder)
{
    SetTitle(text);
}

ShellBrowser::~ShellBrowser() = default;

void ShellBrowser::SetOwner(QWidget* window)
{
    if (!IsOpen())
        owner = window;
}

void ShellBrowser::SetRoot(const char* folder)
{
    if (!IsOpen())
        root = folder;
}

void ShellBrowser::SetFlags(unsigned options)
{
    if (!IsOpen())
        flags = options;
}

void ShellBrowser::SetTitle(const char* text)
{
    if (!IsOpen())
        title = text;
}

// The program carries no string resources: a resource title is never found.
void ShellBrowser::SetTitle(int) {}

bool ShellBrowser::Run()
{
    QDialog dialog(owner);
    dialog.setWindowTitle(QString::fromUtf8(title.GetString()));
    dialog.resize(420, 460);
    auto* layout = new QVBoxLayout(&dialog);
    auto* titleLine = new QLabel(QString::fromUtf8(title.GetString()), &dialog);
    titleLine->setTextFormat(Qt::PlainText);
    layout->addWidget(titleLine);

    model = new QFileSystemModel(&dialog);
    model->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot | QDir::Drives);
    const QString rootPath = root.IsEmpty() ? QStringLiteral("/") : QString::fromUtf8(root.GetString());
    model->setRootPath(rootPath);
    tree = new QTreeView(&dialog);
    tree->setModel(model);
    tree->setRootIndex(model->index(rootPath));
    for (int column = 1; column < model->columnCount(); ++column)
        tree->hideColumn(column);
    tree->header()->hide();
    layout->addWidget(tree);

    status = nullptr;
    if (flags & withStatusText) {
        status = new QLabel(&dialog);
        status->setTextFormat(Qt::PlainText);
        layout->addWidget(status);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    okButton = buttons->button(QDialogButtonBox::Ok);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    layout->addWidget(buttons);

    QObject::connect(tree->selectionModel(), &QItemSelectionModel::currentChanged, &dialog,
                     [this](const QModelIndex& current) {
                         OnSelChanged(model->filePath(current).toUtf8().constData());
                     });
    chooser = &dialog;
    QTimer::singleShot(0, &dialog, [this] { OnInitialized(); });

    bool chosen = false;
    if (dialog.exec() == QDialog::Accepted) {
        const QModelIndex current = tree->currentIndex();
        path = (current.isValid() ? model->filePath(current) : rootPath).toUtf8().constData();
        chosen = true;
    }
    chooser = nullptr;
    status = nullptr;
    okButton = nullptr;
    tree = nullptr;
    model = nullptr;
    return chosen;
}

void ShellBrowser::EnableOK(bool enable)
{
    if (IsOpen() && okButton)
        okButton->setEnabled(enable);
}

void ShellBrowser::SetSelection(const char* folder)
{
    if (!IsOpen())
        return;
    const QModelIndex index = model->index(QString::fromUtf8(folder ? folder : ""));
    if (!index.isValid())
        return;
    tree->setCurrentIndex(index);
    tree->scrollTo(index);
}

void ShellBrowser::SetStatusText(const char* text)
{
    if (IsOpen() && status)
        status->setText(QString::fromUtf8(text ? text : ""));
}
