#pragma once

#include "CoreMinimal.h"

// Not in the reference notes beyond its four-edge constructor (unreal-api-editor.md §3.7); check
// against the engine.
class FSlateRect
{
public:
	float Left;
	float Top;
	float Right;
	float Bottom;

	explicit FSlateRect(float InLeft = -1, float InTop = -1, float InRight = -1, float InBottom = -1);
};
