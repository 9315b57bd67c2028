// Texts of title and line, and which controls are enabled.
#include "form/title_text.h"

#include <gtest/gtest.h>

#include "scratch.h"

namespace {

TEST(TitleText, NamesTheFileAndMarksChanges) {
    const struct {
        bool dirty;
        WideView path;
        const char* title;
        const char* line;
    } cases[] = {
        {false, {}, "Veldrane VM — Configuration", "Nouvelle configuration — non enregistrée"},
        {true, {}, "Veldrane VM — Configuration *", "Nouvelle configuration — non enregistrée  (modifiée)"},
        {false, TEXT("C:\\vm\\a.config"), "Veldrane VM — Configuration", "C:\\vm\\a.config"},
        {true, TEXT("C:\\vm\\a.config"), "Veldrane VM — Configuration *", "C:\\vm\\a.config  (modifiée)"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Narrow(TitleText(c.dirty)), c.title);
        EXPECT_EQ(Narrow(ConfigLineText(c.path, c.dirty)), c.line);
    }
}

TEST(TitleText, EnablesTheModuleButtonsByTheSelectedRow) {
    const struct {
        std::int32_t selected;
        std::size_t count;
        bool args_and_remove, up, down;
    } cases[] = {
        {-1, 0, false, false, false}, {-1, 3, false, false, false}, {0, 1, true, false, false},
        {0, 3, true, false, true},    {1, 3, true, true, true},     {2, 3, true, true, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.selected << " of " << c.count);
        const Enabling enabling = EnablingOf({false, false, c.selected, c.count, false});
        EXPECT_EQ(enabling.module_args_and_remove, c.args_and_remove);
        EXPECT_EQ(enabling.module_up, c.up);
        EXPECT_EQ(enabling.module_down, c.down);
    }
}

TEST(TitleText, EnablesDisplayFieldsAndLaunchEachByItsOwnCondition) {
    for (const bool explicit_video : {false, true}) {
        for (const bool headless : {false, true}) {
            for (const bool runs : {false, true}) {
                const Enabling enabling = EnablingOf({explicit_video, headless, -1, 0, runs});
                EXPECT_EQ(enabling.size_fields, explicit_video);
                EXPECT_NE(enabling.zoom, headless);
                EXPECT_NE(enabling.launch_and_verify, runs);
            }
        }
    }
}

}  // namespace
