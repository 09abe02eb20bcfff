#pragma once

#include "CoreMinimal.h"
#include "Fonts/SlateFontInfo.h"

class FCoreStyle
{
public:
	// Typefaces of the default font: "Regular", "Bold", "Italic", "Mono" and others.
	static FSlateFontInfo GetDefaultFontStyle(const FName InTypefaceFontName, const float InSize, const FFontOutlineSettings& InOutlineSettings = FFontOutlineSettings());
};
