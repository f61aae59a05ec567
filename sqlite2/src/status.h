#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace sqlite2 {

// Result codes, numbered as SQLite 2.8 numbers them (sqlite.h has the same).
enum StatusCode : int {
    kOk = 0,
    kError = 1,
    kAbort = 4,
    kBusy = 5,
    kNoMemory = 7,
    kReadOnly = 8,
    kIoError = 10,
    kCorrupt = 11,
    kFull = 13,
    kCantOpen = 14,
    kConstraint = 19,
    kMismatch = 20,
    kNotADatabase = 26,
};

// Messages that more than one place raises, in 2.8's words.
namespace message {
inline constexpr const char* locked = "database is locked";
inline constexpr const char* readOnly = "attempt to write a readonly database";
inline constexpr const char* full = "database is full";
inline constexpr const char* ioError = "disk I/O error";
inline constexpr const char* corrupt = "database disk image is malformed";
inline constexpr const char* notADatabase = "file is encrypted or is not a database";
inline constexpr const char* cantOpen = "unable to open database file";
inline constexpr const char* noMemory = "out of memory";
inline constexpr const char* noSuchTable = "no such table: "; // followed by the name
} // namespace message

// The outcome of an operation of the engine: a code and, for a failure, the
// message a user sees. An Ok status is a code and a null pointer, so the
// many that a row's steps return cost next to nothing; a message is shared
// by the copies of its status.
class Status {
public:
    Status() = default;
    Status(StatusCode code, std::string text)
        : code(code), text(text.empty() ? nullptr : std::make_shared<const std::string>(std::move(text)))
    {
    }

    static Status Ok() { return {}; }
    static Status Busy() { return {kBusy, message::locked}; }
    static Status ReadOnly() { return {kReadOnly, message::readOnly}; }
    static Status Full() { return {kFull, message::full}; }
    static Status IoError() { return {kIoError, message::ioError}; }
    static Status Corrupt() { return {kCorrupt, message::corrupt}; }
    static Status NoMemory() { return {kNoMemory, message::noMemory}; }
    static Status NoSuchTable(const std::string& name) { return {kError, message::noSuchTable + name}; }

    bool ok() const { return code == kOk; }
    explicit operator bool() const { return ok(); }
    StatusCode Code() const { return code; }
    const std::string& Message() const
    {
        static const std::string none;
        return text ? *text : none;
    }

private:
    StatusCode code = kOk;
    std::shared_ptr<const std::string> text;
};

// 2.8's syntax error, naming the text where it stopped reading.
inline Status SyntaxErrorNear(std::string_view text)
{
    return {kError, "near \"" + std::string(text) + "\": syntax error"};
}

} // namespace sqlite2
