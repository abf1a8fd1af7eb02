// How the library speaks: one statement a site.
//
// Every site refreshes the debug level from the sign file, then tests it, and only then formats. A message goes to
// standard output in one write, so that threads never interleave inside it. Assertions and warnings also go to the error
// log "/mnt/mtd/log/SensorError.log".
//
//   SENSOR_DBG(format, ...)     debug, with its place       shown at level 6 and above
//   SENSOR_TRACE(format, ...)   debug, without its place    6
//   SENSOR_ERR(format, ...)     error                       6
//   SENSOR_INFO(format, ...)    dumps of documents          7
//   SENSOR_WARN(format, ...)    warning, also logged        4
//   SENSOR_PRINT(format, ...)   plain text, at every level, without colour
//
//   SENSOR_ASSERT(holds, "condition")                       an assertion: says so when `holds` is false, also in the log,
//   SENSOR_ASSERT_DETAIL(holds, "condition", format, ...)   with a second message for the values; level 0 and above.
//
// An assertion that fails aborts the process when g_bEnAssert is set; otherwise the site carries on. Both forms are
// expressions that are true when the condition held. The condition's text is what people look for in a log: it is frozen
// even where the code around it has other words.
//
// The forms with _AT take the line that the message carries; the others use their own line. The forms with _OF speak in
// the name of the operation whose step they stand in: people know the operation, not its steps. Every source file that
// uses these has a constant kSourceFile: the name under which people know the place, which for the controller is one name
// for all of its files.
//
// Threads: any. Blocks for the file accesses.
#pragma once

#include "sensor/diag/DebugLevel.h"

#include <cstdarg>

namespace diag {

enum class Tag { Assert, Warn, Err, Dbg, Info };

struct Place {
    const char* szFile;
    const char* szFunction;   // short name
    const char* szSignature;  // in full, for the C library's abort message
    int nLine;
};

// An operation that is written as several functions, for the messages of its steps.
struct Operation {
    const char* szFunction;
    const char* szSignature;
};

// With the place, or without it when p_pPlace is null.
void message(Tag p_eTag, const Place* p_pPlace, const char* p_szFormat, ...) __attribute__((format(printf, 3, 4)));

void print(const char* p_szFormat, ...) __attribute__((format(printf, 1, 2)));

// Report an assertion that does not hold.
void failed(const Place& p_stPlace, const char* p_szCondition);
void failedDetail(const Place& p_stPlace, const char* p_szCondition, const char* p_szFormat, ...)
    __attribute__((format(printf, 3, 4)));

}  // namespace diag

#define SENSOR_PLACE_AT(line)                            \
    diag::Place {                                        \
        kSourceFile, __func__, __PRETTY_FUNCTION__, line \
    }

#define SENSOR_PLACE_OF(operation, line)                                   \
    diag::Place {                                                          \
        kSourceFile, (operation).szFunction, (operation).szSignature, line \
    }

#define SENSOR_MESSAGE_FROM(tag, place, ...)              \
    do {                                                  \
        const diag::Place stMessagePlace = place;         \
        diag::message(tag, &stMessagePlace, __VA_ARGS__); \
    } while (false)
#define SENSOR_MESSAGE_AT(tag, line, ...) SENSOR_MESSAGE_FROM(tag, SENSOR_PLACE_AT(line), __VA_ARGS__)
#define SENSOR_MESSAGE_OF(tag, operation, ...) \
    SENSOR_MESSAGE_FROM(tag, SENSOR_PLACE_OF(operation, __LINE__), __VA_ARGS__)

#define SENSOR_DBG_AT(line, ...) SENSOR_MESSAGE_AT(diag::Tag::Dbg, line, __VA_ARGS__)
#define SENSOR_DBG_OF(operation, ...) SENSOR_MESSAGE_OF(diag::Tag::Dbg, operation, __VA_ARGS__)
#define SENSOR_DBG(...) SENSOR_DBG_AT(__LINE__, __VA_ARGS__)
#define SENSOR_TRACE(...) diag::message(diag::Tag::Dbg, nullptr, __VA_ARGS__)
#define SENSOR_ERR(...) SENSOR_MESSAGE_AT(diag::Tag::Err, __LINE__, __VA_ARGS__)
#define SENSOR_ERR_OF(operation, ...) SENSOR_MESSAGE_OF(diag::Tag::Err, operation, __VA_ARGS__)
#define SENSOR_INFO(...) SENSOR_MESSAGE_AT(diag::Tag::Info, __LINE__, __VA_ARGS__)
#define SENSOR_INFO_OF(operation, ...) SENSOR_MESSAGE_OF(diag::Tag::Info, operation, __VA_ARGS__)
#define SENSOR_WARN_AT(line, ...) SENSOR_MESSAGE_AT(diag::Tag::Warn, line, __VA_ARGS__)
#define SENSOR_WARN(...) SENSOR_WARN_AT(__LINE__, __VA_ARGS__)
#define SENSOR_PRINT(...) diag::print(__VA_ARGS__)

// The values of a detail are looked at after the condition, and only when it does not hold.
#define SENSOR_ASSERT_AT(line, holds, condition) ((holds) || (diag::failed(SENSOR_PLACE_AT(line), condition), false))
#define SENSOR_ASSERT(holds, condition) SENSOR_ASSERT_AT(__LINE__, holds, condition)
#define SENSOR_ASSERT_OF(operation, holds, condition) \
    ((holds) || (diag::failed(SENSOR_PLACE_OF(operation, __LINE__), condition), false))
#define SENSOR_ASSERT_DETAIL_AT(line, holds, condition, ...) \
    ((holds) || (diag::failedDetail(SENSOR_PLACE_AT(line), condition, __VA_ARGS__), false))
#define SENSOR_ASSERT_DETAIL(holds, condition, ...) SENSOR_ASSERT_DETAIL_AT(__LINE__, holds, condition, __VA_ARGS__)
#define SENSOR_ASSERT_DETAIL_OF(operation, holds, condition, ...) \
    ((holds) || (diag::failedDetail(SENSOR_PLACE_OF(operation, __LINE__), condition, __VA_ARGS__), false))
