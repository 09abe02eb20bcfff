#pragma once

#include "CoreMinimal.h"

struct FSlateIcon
{
	FSlateIcon();
	FSlateIcon(const FName InStyleSetName, const FName InStyleName);
};
