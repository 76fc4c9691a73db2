#include "batch/Admission.h"

#include <gtest/gtest.h>

using KestoHost::Admission;

TEST(Admission, LetsInWhatFitsTogether) {
    Admission admission(100);
    EXPECT_TRUE(admission.admits(60));
    admission.begin(60);
    EXPECT_TRUE(admission.admits(40));
    EXPECT_FALSE(admission.admits(41));
}

TEST(Admission, LetsInWhatIsTooLargeAlone) {
    Admission admission(100);
    EXPECT_TRUE(admission.admits(1000));
    admission.begin(1000);
    EXPECT_FALSE(admission.admits(0));
    admission.end(1000);
    EXPECT_TRUE(admission.admits(1));
}

TEST(Admission, HasRoomAgainForWhatEnded) {
    Admission admission(100);
    admission.begin(60);
    admission.begin(40);
    admission.end(60);
    EXPECT_EQ(admission.running(), 1);
    EXPECT_TRUE(admission.admits(60));
    EXPECT_FALSE(admission.admits(61));
}
