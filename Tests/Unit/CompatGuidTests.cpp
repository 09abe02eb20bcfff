// FGuid's text forms, as node GUIDs are printed for clients.
#include "Misc/Guid.h"

#include <gtest/gtest.h>

TEST(CompatGuid, PrintsThirtyTwoUpperCaseDigitsByDefault)
{
	const FGuid Guid(0x0A1B2C3D, 0xE5F60718, 0x293A4B5C, 0x6D7E8F90);
	EXPECT_EQ(UECompatToUtf8(Guid.ToString()), "0A1B2C3DE5F60718293A4B5C6D7E8F90");
	EXPECT_EQ(UECompatToUtf8(Guid.ToString(EGuidFormats::DigitsLower)), "0a1b2c3de5f60718293a4b5c6d7e8f90");
	EXPECT_EQ(UECompatToUtf8(Guid.ToString(EGuidFormats::DigitsWithHyphens)), "0A1B2C3D-E5F6-0718-293A-4B5C6D7E8F90");
	EXPECT_EQ(UECompatToUtf8(Guid.ToString(EGuidFormats::DigitsWithHyphensInBraces)), "{0A1B2C3D-E5F6-0718-293A-4B5C6D7E8F90}");
	EXPECT_EQ(UECompatToUtf8(FGuid().ToString()), "00000000000000000000000000000000");
	EXPECT_FALSE(FGuid().IsValid());
	EXPECT_TRUE(Guid.IsValid());
	EXPECT_EQ(Guid, FGuid(0x0A1B2C3D, 0xE5F60718, 0x293A4B5C, 0x6D7E8F90));
	EXPECT_NE(Guid, FGuid(0x0A1B2C3D, 0xE5F60718, 0x293A4B5C, 0x6D7E8F91));
}
