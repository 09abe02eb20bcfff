#pragma once

#include "CoreMinimal.h"

struct FFontOutlineSettings
{
	FFontOutlineSettings();
};

// A font face and size, as text widgets take it.
struct FSlateFontInfo
{
	FSlateFontInfo();
};
