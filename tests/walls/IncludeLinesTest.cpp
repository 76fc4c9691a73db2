#include "walls/IncludeLines.h"

#include <gtest/gtest.h>

namespace Walls {

namespace {

using Lines = std::vector<IncludeLine>;

} // namespace

TEST(IncludeLines, TellsTargetFormAndLine) {
    EXPECT_EQ(includesOf("#pragma once\n\n#include \"platform/Gdi.h\"\n#include <vector>\nint x;\n"),
              (Lines{{"platform/Gdi.h", IncludeForm::Quoted, 3}, {"vector", IncludeForm::Angled, 4}}));
}

TEST(IncludeLines, AllowsBlanksAndWhatFollows) {
    EXPECT_EQ(includesOf("  #  include\t<a.h> // why\n#include<b.h>"),
              (Lines{{"a.h", IncludeForm::Angled, 1}, {"b.h", IncludeForm::Angled, 2}}));
}

TEST(IncludeLines, SkipsComments) {
    EXPECT_EQ(includesOf("// #include <a.h>\n/* #include <b.h>\n#include <c.h>\n*/ #include <d.h>\n"),
              (Lines{{"d.h", IncludeForm::Angled, 4}}));
}

TEST(IncludeLines, SkipsOtherDirectivesAndMacros) {
    EXPECT_EQ(includesOf("#define include \"a.h\"\n#include MACRO\n#include \"open\nincludes(\"b.h\");\n"),
              Lines{});
}

} // namespace Walls
