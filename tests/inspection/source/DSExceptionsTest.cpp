#include "inspection/source/DSExceptions.h"

#include <gtest/gtest.h>

#include <type_traits>

TEST(DSExceptions, TheBaseTellsItsMessageAlone) {
    EXPECT_STREQ(DSMediaDetException("DSMediaDet has not been initialized.").what(),
                 "DSMediaDet has not been initialized.");
}

TEST(DSExceptions, ABadParameterNamesItsClass) {
    EXPECT_STREQ(DSInvalidParameterException("time").what(), "DSInvalidParameterException: time");
}

TEST(DSExceptions, ANullPointerNamesItsClass) {
    EXPECT_STREQ(DSPointerException("pin").what(), "DSPointerException: pin");
}

TEST(DSExceptions, AResultIsASignedDecimal) {
    EXPECT_STREQ(DSHresultException("Could not load file.", static_cast<HRESULT>(0x80004005)).what(),
                 "DSHresultException: Could not load file. ErrorMessage(-2147467259)");
}

TEST(DSExceptions, AStatusIsASignedDecimal) {
    EXPECT_STREQ(DSGdiPlusStatusException("Could not scale.", 7).what(),
                 "DSGdiPlusStatusException: Could not scale. (Gdiplus Status: 7)");
    EXPECT_STREQ(DSGdiPlusStatusException("Could not scale.", -1).what(),
                 "DSGdiPlusStatusException: Could not scale. (Gdiplus Status: -1)");
}

TEST(DSExceptions, ACopyKeepsItsText) {
    const DSHresultException first("seek", 1);
    const DSHresultException copy = first; // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_STREQ(copy.what(), first.what());
}

TEST(DSExceptions, TheParsersSignalHasNoText) {
    EXPECT_STREQ(MP4ParseException().what(), "");
}

TEST(DSExceptions, OneHandlerCatchesTheFamilyButNotTheParsersSignal) {
    static_assert(std::is_base_of_v<DSMediaDetException, DSInvalidParameterException>);
    static_assert(std::is_base_of_v<DSMediaDetException, DSPointerException>);
    static_assert(std::is_base_of_v<DSMediaDetException, DSHresultException>);
    static_assert(std::is_base_of_v<DSMediaDetException, DSGdiPlusStatusException>);
    EXPECT_THROW(throw DSHresultException("seek", 1), DSMediaDetException);
    try {
        throw MP4ParseException();
    } catch (const DSMediaDetException&) {
        FAIL() << "caught with the family";
    } catch (const std::exception&) {
        SUCCEED();
    }
}
