#include "DialogTestSupport.h"

#include "EnhGUI/WindowText.h"

#include <QApplication>
#include <QCoreApplication>
#include <gtest/gtest.h>

#include <memory>

namespace {

void PlayFrom(std::shared_ptr<std::vector<std::function<void()>>> steps, size_t next)
{
    if (next >= steps->size())
        return;
    (*steps)[next]();
    QTimer::singleShot(0, [steps, next] { PlayFrom(steps, next + 1); });
}

} // namespace

void PlayWhenShown(std::vector<std::function<void()>> steps)
{
    auto shared = std::make_shared<std::vector<std::function<void()>>>(std::move(steps));
    QTimer::singleShot(0, [shared] { PlayFrom(shared, 0); });
}

QWidget* ModalWindow()
{
    return QApplication::activeModalWidget();
}

// The dialogs need an application object; tests run without a display.
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

std::string GetWindowTextOf(const QWidget* window)
{
    return GetWindowText(window).GetString();
}
