#pragma once

#include "CoreMinimal.h"

class ISlateStyle;
struct FSlateBrush;

class FAppStyle
{
public:
	static const ISlateStyle& Get();
	static const FName GetAppStyleSetName();
	static const FSlateBrush* GetBrush(const FName PropertyName, const TCHAR* Specifier = nullptr);
};
