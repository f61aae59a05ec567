#pragma once

// The tests' side of the pager's file-change seam: FileChangeSteps.cpp
// defines sqlite2::BeforeFileChange, which takes the place of the library's
// empty one in every test program linked with it.
namespace file_change_steps {

// Called before each write, create, truncate and delete of a file; null
// (the default) calls nothing.
using Observer = void (*)();
void SetObserver(Observer observer);

} // namespace file_change_steps
