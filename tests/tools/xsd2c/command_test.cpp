// The command xsd2c: what it takes, what it writes, and what it leaves behind when it refuses.
#include <gtest/gtest.h>

#include "tests/tools/support/run.h"

namespace {

// Writes good.xsd and bad.xsd in front of a command.
#define SCHEMAS                                                                                \
    "printf '<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\"><xs:element name=\"a\" " \
    "type=\"xs:int\"/></xs:schema>' >good.xsd; sed s/xs:int/nothing/ good.xsd >bad.xsd; "      \
    "sed 's/name=/default=\"1\" name=/' good.xsd >warned.xsd; rm -f *.xml; "

constexpr CommandCase kUsage[] = {
    {"nothing", "xsd2c", "", "xsd2c: no schema is given\nTry 'xsd2c --help'.\n", 2},
    {"unknown option", "xsd2c --frob x.xsd", "",
     "xsd2c: unknown option --frob\nTry 'xsd2c --help'.\n", 2},
    {"unknown short option", "xsd2c -x x.xsd", "",
     "xsd2c: unknown option -x\nTry 'xsd2c --help'.\n", 2},
    {"option without argument", "xsd2c x.xsd -o", "",
     "xsd2c: -o lacks an argument\nTry 'xsd2c --help'.\n", 2},
    {"long option without argument", "xsd2c x.xsd --prefix", "",
     "xsd2c: --prefix lacks an argument\nTry 'xsd2c --help'.\n", 2},
    {"empty argument", "xsd2c --depfile '' x.xsd", "",
     "xsd2c: --depfile lacks an argument\nTry 'xsd2c --help'.\n", 2},
    {"help", "xsd2c --help | head -1",
     "Usage: xsd2c [-o DIR] [--prefix NAME] [--strict] [--depfile FILE] SCHEMA.xsd...\n", "", 0},
    {"a full device for help", "xsd2c --help >/dev/full", "", "", 2},
};

TEST(Xsd2cCommand, Usage) {
    expectCommands(kUsage);
}

constexpr CommandCase kFiles[] = {
    {"one unit", SCHEMAS "xsd2c good.xsd && ls", "bad.xsd\ngood.c\ngood.h\ngood.xsd\nwarned.xsd\n",
     "", 0},
    {"into a directory", SCHEMAS "mkdir d; xsd2c -od good.xsd && ls d", "good.c\ngood.h\n", "", 0},
    {"several units",
     SCHEMAS "cp good.xsd other-1.xsd; mkdir d; xsd2c --output=d good.xsd other-1.xsd && ls d",
     "good.c\ngood.h\nother_1.c\nother_1.h\n", "", 0},
    {"the same every time",
     SCHEMAS "mkdir d e; xsd2c -o d good.xsd; cp good.xsd e; cd e; sleep 1; xsd2c -o . good.xsd;"
             "cd ..; cmp d/good.c e/good.c && cmp d/good.h e/good.h && echo same",
     "same\n", "", 0},
    {"a prefix", SCHEMAS "xsd2c --prefix NET good.xsd && grep -o 'Schema_NET_a(void)' good.h",
     "Schema_NET_a(void)\n", "", 0},
    {"the marker", SCHEMAS "xsd2c good.xsd && grep -o '____xsd2c.*xsd' good.c",
     "____xsd2c_xsd_filename____:good.xsd\n", "", 0},
    {"a rule for make",
     SCHEMAS "mkdir 'a b'; sed 's/<xs:el/<xs:include schemaLocation=\"good.xsd\"\\/><xs:el/;"
             "s/\"a\"/\"b\"/' good.xsd >'x.xsd'; xsd2c -o 'a b' --depfile x.d x.xsd && cat x.d",
     "a\\ b/x.c a\\ b/x.h: \\\n  x.xsd \\\n  good.xsd\n", "", 0},
    {"ordinary rights", SCHEMAS "umask 027; xsd2c good.xsd && stat -c %a good.c", "640\n", "", 0},
};

TEST(Xsd2cCommand, Writes) {
    expectCommands(kFiles);
}

constexpr CommandCase kRefused[] = {
    {"a mistake", SCHEMAS "mkdir d; xsd2c -o d --depfile d/x bad.xsd; s=$?; ls d; exit $s", "",
     "bad.xsd:1:56: error: type 'nothing' is not defined\n", 1},
    {"a mistake in one of two", SCHEMAS "mkdir d; xsd2c -o d good.xsd bad.xsd; s=$?; ls d; exit $s",
     "", "bad.xsd:1:56: error: type 'nothing' is not defined\n", 1},
    {"a missing file", "xsd2c nosuch.xsd", "", "nosuch.xsd: error: No such file or directory\n", 1},
    {"no schema", "xsd2c switch.xml", "",
     "switch.xml:5:1: error: the root element is 'sw:switch', not 'schema' of "
     "http://www.w3.org/2001/XMLSchema\n",
     1},
    {"a warning", SCHEMAS "mkdir d; xsd2c -o d warned.xsd && ls d", "warned.c\nwarned.h\n",
     "warned.xsd:1:56: warning: the default value of element 'a' is not enforced\n", 0},
    {"a warning as an error",
     SCHEMAS "mkdir d; xsd2c --strict -o d warned.xsd; s=$?; ls d; exit $s", "",
     "warned.xsd:1:56: error: the default value of element 'a' is not enforced\n", 1},
    {"a missing directory", SCHEMAS "xsd2c -o nosuch good.xsd", "",
     "xsd2c: nosuch/good.h: No such file or directory\n", 2},
    {"a directory in the place of a file",
     SCHEMAS "mkdir -p d/good.c; xsd2c -o d good.xsd; s=$?; ls d; exit $s", "good.c\n",
     "xsd2c: d/good.c: Is a directory\n", 2},
    {"two units of a name", SCHEMAS "mkdir d; cp good.xsd d; xsd2c good.xsd d/good.xsd", "",
     "xsd2c: d/good.xsd and good.xsd are both called 'good'\n", 2},
    {"the built-in schema's name", "xsd2c xml_schema_buildin.xsd", "",
     "xsd2c: xml_schema_buildin.xsd and the built-in schema are both called "
     "'xml_schema_buildin'\n",
     2},
};

TEST(Xsd2cCommand, Refuses) {
    expectCommands(kRefused);
}

TEST(Xsd2cManual, HasEveryOption) {
    const Result result = runLine(
        "xsd2c --help | grep -oE -e '--[a-z]+' | sort -u | while read -r option; do"
        " sed 's/\\\\-/-/g' '" XSD2C_SOURCE_DIR
        "/xsd2c.1' | grep -qwF -e \"$option\" || echo \"$option\"; done");
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
}

TEST(Xsd2cManual, IsFormattedWithoutWarnings) {
    if (runLine("groff --version").status != 0) GTEST_SKIP() << "groff is not installed";
    const Result result = runLine("groff -ww -man -z '" XSD2C_SOURCE_DIR "/xsd2c.1'");
    EXPECT_EQ(result.out + result.err, "");
    EXPECT_EQ(result.status, 0);
}

TEST(Xsd2cCompletion, OffersTheOptions) {
    if (runLine("bash --version").status != 0) GTEST_SKIP() << "bash is not installed";
    const Result offered = runLine(
        "cat >complete <<'END'\n"
        "source '" XSD2C_SOURCE_DIR
        "/completion/xsd2c'\n"
        "COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _xsd2c; printf '%s\\n' \"${COMPREPLY[@]}\"\n"
        "END\n"
        "bash --norc --noprofile complete xsd2c -- | sort");
    const Result options = runLine("xsd2c --help | grep -oE -e '--[a-z]+' | sort -u");
    EXPECT_EQ(offered.out, options.out);
}

}  // namespace
