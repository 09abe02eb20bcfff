#pragma once

enum EPropertyPortFlags
{
	PPF_None = 0,
	PPF_Delimited = 0x00000001,
	PPF_Copy = 0x00000800,
	PPF_IncludeTransient = 0x00020000,
	PPF_UseDeprecatedProperties = 0x08000000,
};
