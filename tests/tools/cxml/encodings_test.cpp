// cxml encodings: which encodings the machine converts.
#include <gtest/gtest.h>

#include <string>

#include "tests/tools/support/run.h"

namespace {

constexpr CommandCase kCases[] = {
    {"a machine that has all", "cxml encodings",
     "UTF-8     reads yes  writes yes\n"
     "UTF-16LE  reads yes  writes yes\n"
     "UTF-16BE  reads yes  writes yes\n"
     "GB2312    reads yes  writes yes\n"
     "UTF-32LE  reads yes  writes yes\n"
     "UTF-32BE  reads yes  writes yes\n"
     "UTF-16    reads yes  writes yes\n"
     "UTF-32    reads yes  writes yes\n"
     "GBK       reads yes  writes yes\n"
     "GB18030   reads yes  writes yes\n"
     "UCS-4     reads yes  writes yes\n"
     "UCS-4BE   reads yes  writes yes\n"
     "UCS-4LE   reads yes  writes yes\n",
     "", 0},
};

TEST(Encodings, All) {
    expectCommands(kCases);
}

#ifdef __GLIBC__
// A list of conversion modules in which one is named that is not there.
constexpr char kWithoutGbk[] =
    "mkdir gconv; printf 'module GBK// INTERNAL nosuch 1\nmodule INTERNAL GBK// nosuch 1\n'"
    " >gconv/gconv-modules; export GCONV_PATH=$PWD/gconv; ";

TEST(Encodings, OneIsMissing) {
    const std::string table = kWithoutGbk + std::string("cxml encodings | grep -n no");
    const std::string status = kWithoutGbk + std::string("cxml encodings >/dev/null");
    const std::string print =
        kWithoutGbk + std::string("cxml print --encoding GBK -o x.xml switch.xml || ls x.xml");
    const CommandCase cases[] = {
        {"table", table.c_str(), "9:GBK       reads no   writes no\n",
         "cxml: this machine does not fully convert GBK\n", 0},
        {"status", status.c_str(), "", "cxml: this machine does not fully convert GBK\n", 1},
        {"print", print.c_str(), "",
         "cxml: this machine does not convert GB18030 to GBK (see cxml encodings)\n"
         "ls: cannot access 'x.xml': No such file or directory\n",
         2},
    };
    expectCommands(cases);
}
#endif

}  // namespace
