// Every exported function with each call of the system that it makes failing in turn, in each of the
// ways in which it may: open, read, write, fsync, close, iconv_open, iconv and regcomp.
#include <gtest/gtest.h>
#include <regex.h>

#include <cerrno>
#include <functional>
#include <string>
#include <vector>

#include "tests/failures/attempt.h"
#include "tests/failures/row.h"
#include "tests/failures/row_names.h"
#include "tests/support/faults.h"
#include "tests/support/small_stack.h"

namespace {

using failures::allRows;
using failures::Answer;
using failures::attempt;
using failures::Attempt;
using failures::Faults;
using failures::Row;
using failures::Trace;
using support::CallPlan;

constexpr std::size_t kNear = 8;

// The rows that make a call, with what they reach when nothing fails.
void forRows(std::size_t failures::Reached::*calls,
             const std::function<void(const Row &, const Attempt &)> &check) {
    std::size_t rows = 0;
    for (const Row &row : allRows()) {
        SCOPED_TRACE(failures::nameOf(row));
        const failures::Silence silence(row);
        const Attempt reference = attempt(row, {});
        if (reference.reached.*calls == 0) continue;
        ++rows;
        check(row, reference);
        if (testing::Test::HasFailure()) return;
    }
    EXPECT_GT(rows, 0u);
}

// Whether a call is tried: far on, where they are like those before them, sanitizers see a few of them.
bool isTried(std::size_t nth) {
    constexpr std::size_t kStep = support::kSanitized ? 7 : 1;
    return nth <= kNear || nth % kStep == 0;
}

// Each call in turn that fails, once and from there on, with each of the errors; calls far on with one of
// the errors in turn.
void forCalls(std::size_t count, const std::vector<int> &errors,
              const std::function<void(std::size_t nth, bool persistent, int error)> &check) {
    for (const bool persistent : {false, true}) {
        for (std::size_t nth = 1; nth <= count; ++nth) {
            if (!isTried(nth)) continue;
            for (std::size_t i = 0; i < errors.size(); ++i) {
                if (nth > kNear && i != nth % errors.size()) continue;
                SCOPED_TRACE(testing::Message() << "call " << nth << ", error " << errors[i]
                                                << (persistent ? " and all later ones" : ""));
                check(nth, persistent, errors[i]);
            }
        }
    }
}

void expectSame(const Attempt &reference, const Attempt &tried) {
    failures::expectNothingLeft(tried);
    EXPECT_EQ(tried.answer, reference.answer);
    EXPECT_EQ(tried.account, reference.account);
}

// ---------------------------------------------------------------- files

TEST(Calls, FilesThatDoNotOpen) {
    forRows(&failures::Reached::opens, [](const Row &row, const Attempt &reference) {
        for (const int error : {EMFILE, ENFILE, ENOENT, EACCES, EINTR, ENOMEM, EIO, ENOSPC}) {
            Faults faults;
            faults.files.failOpen = true;
            faults.files.openErrno = error;
            const Attempt tried = attempt(row, faults);
            EXPECT_EQ(tried.answer, Answer::kRefused) << error;
            EXPECT_EQ(tried.reached.reads + tried.reached.writes + tried.reached.closes, 0u);
            failures::expectKept(row, reference, tried);
        }
    });
}

// A pipe gives fewer bytes than it was asked for. What is read ahead may then be less.
TEST(Calls, ShortReads) {
    forRows(&failures::Reached::reads, [](const Row &row, const Attempt &reference) {
        for (const std::size_t count : {1, 2, 7, 63, 500}) {
            Faults faults;
            faults.files.shortCount = count;
            const Attempt tried = attempt(row, faults);
            SCOPED_TRACE(count);
            failures::expectNothingLeft(tried);
            EXPECT_EQ(tried.answer, Answer::kGood);
            if (row.trace == Trace::kOwn) {
                EXPECT_TRUE(reference.bytes.compare(0, tried.bytes.size(), tried.bytes) == 0);
                EXPECT_GE(tried.bytes.size(), 64u);
            } else {
                EXPECT_EQ(tried.account, reference.account);
            }
        }
    });
}

// Intended: a read that fails, of whatever cause, is the end of the file. All is then as with a file
// that ends there, and it is not asked again.
TEST(Calls, ReadsThatFail) {
    forRows(&failures::Reached::reads, [](const Row &row, const Attempt &reference) {
        const std::vector<int> errors{EIO, EINTR, EAGAIN, EISDIR, 0};
        forCalls(reference.reached.reads, errors, [&](std::size_t nth, bool persistent, int error) {
            Faults faults;
            faults.files.failAt = nth;
            faults.files.failErrno = error;
            faults.files.persistent = persistent;
            const Attempt tried = attempt(row, faults);
            Faults shorter;
            shorter.fileLimit = tried.bytesRead;
            expectSame(attempt(row, shorter), tried);
            EXPECT_EQ(tried.reached.reads, nth);
        });
    });
}

TEST(Calls, ShortWrites) {
    forRows(&failures::Reached::writes, [](const Row &row, const Attempt &reference) {
        for (const std::size_t count : {1, 3, 100, 255}) {
            Faults faults;
            faults.files.shortCount = count;
            const Attempt tried = attempt(row, faults);
            SCOPED_TRACE(count);
            expectSame(reference, tried);
            EXPECT_GE(tried.reached.writes, reference.reached.writes);
        }
    });
}

TEST(Calls, WritesThatAreInterruptedAreMadeAgain) {
    forRows(&failures::Reached::writes, [](const Row &row, const Attempt &reference) {
        for (std::size_t nth = 1; nth <= reference.reached.writes; ++nth) {
            if (!isTried(nth)) continue;
            Faults faults;
            faults.files.failAt = nth;
            faults.files.failErrno = EINTR;
            const Attempt tried = attempt(row, faults);
            SCOPED_TRACE(nth);
            expectSame(reference, tried);
            EXPECT_EQ(tried.reached.writes, reference.reached.writes + 1);
        }
    });
}

// The call is refused, and what stands in the file is the beginning of what should.
TEST(Calls, WritesThatFail) {
    forRows(&failures::Reached::writes, [](const Row &row, const Attempt &reference) {
        const std::vector<int> errors{EIO, ENOSPC, EFBIG, EPIPE, EAGAIN, 0};
        forCalls(reference.reached.writes, errors,
                 [&](std::size_t nth, bool persistent, int error) {
                     Faults faults;
                     faults.files.failAt = nth;
                     faults.files.failErrno = error;
                     faults.files.persistent = persistent;
                     const Attempt tried = attempt(row, faults);
                     EXPECT_EQ(tried.answer, Answer::kRefused);
                     EXPECT_EQ(tried.reached.writes, nth);
                     failures::expectKept(row, reference, tried);
                 });
    });
}

// Nobody is told of these, and nothing else may come of them. A file is closed once, whatever close
// says.
TEST(Calls, SyncsAndClosesThatFail) {
    for (const int error : {EIO, EINTR, ENOSPC, EROFS}) {
        Faults faults;
        faults.files.syncErrno = faults.files.closeErrno = error;
        const auto check = [&](const Row &row, const Attempt &reference) {
            const Attempt tried = attempt(row, faults);
            expectSame(reference, tried);
            EXPECT_EQ(tried.reached.closes, reference.reached.closes);
            EXPECT_EQ(tried.reached.syncs, reference.reached.syncs);
        };
        forRows(&failures::Reached::syncs, check);
        forRows(&failures::Reached::closes, check);
    }
}

// ---------------------------------------------------------------- converters and patterns

// A musl with a converter library beside it calls its functions by other names, which do not come
// through here.
bool convertersAreSeen() {
    support::FaultyConverters converters;
    support::StreamPtr(XML_IO_MemOutStreamCreate(XML_ENCODING_GB18030, XML_ENCODING_UTF_8));
    return converters.opens() != 0;
}

void expectRefusedOrSame(const Row &row, const Attempt &reference, const Faults &faults) {
    const Attempt tried = attempt(row, faults);
    EXPECT_TRUE(tried.failed);
    failures::expectKept(row, reference, tried);
}

TEST(Calls, ConvertersThatDoNotOpen) {
    if (!convertersAreSeen()) GTEST_SKIP() << "iconv_open has another name here";
    forRows(&failures::Reached::converters, [](const Row &row, const Attempt &reference) {
        const std::vector<int> errors{EINVAL, ENOMEM, EMFILE};
        forCalls(reference.reached.converters, errors,
                 [&](std::size_t nth, bool persistent, int error) {
                     Faults faults;
                     faults.opening = CallPlan{nth, persistent, error};
                     expectRefusedOrSame(row, reference, faults);
                 });
    });
}

TEST(Calls, ConversionsThatFail) {
    if (!convertersAreSeen()) GTEST_SKIP() << "iconv has another name here";
    forRows(&failures::Reached::conversions, [](const Row &row, const Attempt &reference) {
        const std::vector<int> errors{EILSEQ, ENOMEM};
        forCalls(reference.reached.conversions, errors,
                 [&](std::size_t nth, bool persistent, int error) {
                     Faults faults;
                     faults.converting = CallPlan{nth, persistent, error};
                     const Attempt tried = attempt(row, faults);
                     EXPECT_TRUE(tried.failed);
                     if (tried.hasInput && tried.answer == Answer::kGood) {
                         // Intended: what does not convert is the end of the input.
                         failures::expectNothingLeft(tried);
                         EXPECT_EQ(reference.bytes.compare(0, tried.bytes.size(), tried.bytes), 0);
                     } else if (tried.account.find("invalid value of QName") != std::string::npos) {
                         // A name that does not convert is none.
                         failures::expectNothingLeft(tried);
                     } else {
                         failures::expectKept(row, reference, tried);
                     }
                 });
    });
}

TEST(Calls, PatternsThatDoNotCompile) {
    forRows(&failures::Reached::patterns, [](const Row &row, const Attempt &reference) {
        const std::vector<int> errors{REG_ESPACE};
        forCalls(reference.reached.patterns, errors,
                 [&](std::size_t nth, bool persistent, int error) {
                     Faults faults;
                     faults.compiling = CallPlan{nth, persistent, error};
                     expectRefusedOrSame(row, reference, faults);
                 });
    });
}

}  // namespace
