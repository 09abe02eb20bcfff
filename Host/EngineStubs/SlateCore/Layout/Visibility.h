#pragma once

#include "CoreMinimal.h"

struct EVisibility
{
	static const EVisibility Visible;
	static const EVisibility Collapsed;
	static const EVisibility Hidden;
	static const EVisibility HitTestInvisible;
	static const EVisibility SelfHitTestInvisible;
	static const EVisibility All;

	EVisibility();
	bool operator==(const EVisibility& Other) const;
	bool operator!=(const EVisibility& Other) const;
	bool IsVisible() const;
};
