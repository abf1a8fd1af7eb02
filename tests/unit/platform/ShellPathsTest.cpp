#include "platform/linux/ShellPaths.h"

#include <gtest/gtest.h>

namespace {

struct Row {
    const char* command;
    const char* rewritten;  // null when nothing changes
};

class ShellPathsTest : public ::testing::TestWithParam<Row> {};

TEST_P(ShellPathsTest, PutsTheRootInFrontOfCameraPathsAlone) {
    const Row& row = GetParam();
    EXPECT_EQ(platform::withRootInFront(row.command, "R"), nullptr == row.rewritten ? row.command : row.rewritten)
        << row.command;
}

INSTANTIATE_TEST_SUITE_P(
    Words, ShellPathsTest,
    ::testing::Values(Row{"", nullptr}, Row{"ls", nullptr}, Row{"/mnt", "\"$R\"/mnt"}, Row{"/mnt/x", "\"$R\"/mnt/x"},
                      Row{"/hd1/x", "\"$R\"/hd1/x"}, Row{"/tmp/x", "\"$R\"/tmp/x"}, Row{"/var/x", nullptr},
                      Row{"rm -rf /mnt/mtd/code/config*/sensor*", "rm -rf \"$R\"/mnt/mtd/code/config*/sensor*"},
                      Row{"cp /mnt/a /tmp/b", "cp \"$R\"/mnt/a \"$R\"/tmp/b"},
                      Row{"ls\t/mnt\n/tmp", "ls\t\"$R\"/mnt\n\"$R\"/tmp"}, Row{"/mnt2", nullptr},
                      Row{"/mnt.old", nullptr}, Row{"/tmp_x/y", nullptr}, Row{"/tmp~", nullptr},
                      Row{"/tmp\xC3\xA4", nullptr}, Row{"/mn", nullptr}, Row{"/x/mnt", nullptr},
                      Row{"foo/tmp", nullptr}, Row{"./tmp", nullptr}, Row{"../mnt/x", nullptr}, Row{"//mnt", nullptr},
                      Row{"-I/mnt/x", nullptr}, Row{"$X/tmp", nullptr}, Row{"${X}/tmp", nullptr}, Row{"*/tmp", nullptr},
                      Row{"~/tmp", nullptr}, Row{"a\\ /tmp", nullptr}, Row{"\\/tmp", nullptr}));

INSTANTIATE_TEST_SUITE_P(
    Operators, ShellPathsTest,
    ::testing::Values(Row{"a>/tmp/x", "a>\"$R\"/tmp/x"}, Row{"a</tmp/x", "a<\"$R\"/tmp/x"},
                      Row{"a;/tmp/x", "a;\"$R\"/tmp/x"}, Row{"a|/tmp/x", "a|\"$R\"/tmp/x"},
                      Row{"a&&/tmp/x", "a&&\"$R\"/tmp/x"}, Row{"(/tmp/x)", "(\"$R\"/tmp/x)"},
                      Row{"A=/tmp/x b", "A=\"$R\"/tmp/x b"}, Row{"dd of=/tmp/x", "dd of=\"$R\"/tmp/x"},
                      Row{"x --file=/mnt/a", "x --file=\"$R\"/mnt/a"},
                      Row{"PATH=/bin:/mnt/bin", "PATH=/bin:\"$R\"/mnt/bin"},
                      Row{"x -o a,/mnt/b", "x -o a,\"$R\"/mnt/b"}, Row{"ls ${X:-/tmp}/y", "ls ${X:-\"$R\"/tmp}/y"},
                      Row{"ls \"${X:-/tmp}\"", "ls \"${X:-${R}/tmp}\""}, Row{"a-/tmp", nullptr},
                      Row{"ls {/tmp,/mnt}", "ls {\"$R\"/tmp,\"$R\"/mnt}"},
                      Row{"case x in /mnt/*)/tmp/run;; esac", "case x in \"$R\"/mnt/*)\"$R\"/tmp/run;; esac"},
                      Row{"ls \\\n/tmp", "ls \\\n\"$R\"/tmp"}, Row{"ab\\\n/tmp", nullptr}));

INSTANTIATE_TEST_SUITE_P(
    Quotes, ShellPathsTest,
    ::testing::Values(Row{"ls \"/mnt/a b\"", "ls \"${R}/mnt/a b\""}, Row{"ls '/mnt/a b'", "ls ''\"$R\"'/mnt/a b'"},
                      Row{"ls \"\"/mnt", "ls \"\"\"$R\"/mnt"}, Row{"ls \"a\"/mnt", nullptr}, Row{"ls 'a'/mnt", nullptr},
                      Row{"ls \"a \"/mnt", nullptr}, Row{"ls 'a '/mnt", nullptr}, Row{"echo \"in /tmp\"", nullptr},
                      Row{"echo 'in /tmp'", nullptr}, Row{"\"A=/tmp\"", "\"A=${R}/tmp\""},
                      Row{"'A='/tmp", "'A='\"$R\"/tmp"}, Row{"echo \\\" /tmp", "echo \\\" \"$R\"/tmp"},
                      Row{"echo \"\\\"\" /tmp", "echo \"\\\"\" \"$R\"/tmp"},
                      Row{"echo '\\' /tmp", "echo '\\' \"$R\"/tmp"},
                      Row{"echo \"'\" /tmp \"'\"", "echo \"'\" \"$R\"/tmp \"'\""},
                      Row{"echo '/tmp", "echo ''\"$R\"'/tmp"}, Row{"echo \\", nullptr}, Row{"echo \"\\", nullptr},
                      Row{"echo '", nullptr}));

INSTANTIATE_TEST_SUITE_P(
    Substitutions, ShellPathsTest,
    ::testing::Values(Row{"x $(/tmp/a)", "x $(\"$R\"/tmp/a)"}, Row{"x $(a /tmp/a)/tmp", "x $(a \"$R\"/tmp/a)/tmp"},
                      Row{"x \"$(cat \"/tmp/a b\")/tmp\"", "x \"$(cat \"${R}/tmp/a b\")/tmp\""},
                      Row{"x \"$(cat /tmp/a) /tmp\" /tmp", "x \"$(cat \"$R\"/tmp/a) /tmp\" \"$R\"/tmp"},
                      Row{"x `/tmp/a`/tmp", "x `\"$R\"/tmp/a`/tmp"},
                      Row{"x \"`cat /tmp/a`\" /tmp", "x \"`cat \"$R\"/tmp/a`\" \"$R\"/tmp"},
                      Row{"x '$(/tmp)' /tmp", "x '$(/tmp)' \"$R\"/tmp"}, Row{"x $((4/tmp))", nullptr}));

INSTANTIATE_TEST_SUITE_P(Comments, ShellPathsTest,
                         ::testing::Values(Row{"# don't /tmp\nls /tmp", "# don't /tmp\nls \"$R\"/tmp"},
                                           Row{"ls # it's /tmp", nullptr}, Row{"ls a#'x /tmp", nullptr},
                                           Row{"ls \"\"# /tmp", "ls \"\"# \"$R\"/tmp"}));

}  // namespace
