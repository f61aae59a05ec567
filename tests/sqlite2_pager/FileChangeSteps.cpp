#include "FileChangeSteps.h"

#include "file_change_steps.h"

namespace {

file_change_steps::Observer observer = nullptr;

} // namespace

void file_change_steps::SetObserver(Observer next)
{
    observer = next;
}

void sqlite2::BeforeFileChange()
{
    if (observer)
        observer();
}
