#pragma once

#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"

USTRUCT()
struct FKey
{
	GENERATED_USTRUCT_BODY()

	FKey();
	FKey(const FName InName);
	FKey(const TCHAR* InName);
	FKey(const ANSICHAR* InName);

	bool IsValid() const;
	bool IsModifierKey() const;
	bool IsGamepadKey() const;
	bool IsTouch() const;
	bool IsMouseButton() const;
	bool IsButtonAxis() const;
	bool IsAxis1D() const;
	bool IsAxis2D() const;
	bool IsAxis3D() const;
	bool IsDigital() const;
	bool IsAnalog() const;
	bool IsBindableInBlueprints() const;
	bool IsBindableToActions() const;
	bool IsDeprecated() const;
	bool IsGesture() const;
	FText GetDisplayName(bool bLongDisplayName = true) const;
	FString ToString() const;
	FName GetFName() const;
	FName GetMenuCategory() const;
};

struct EKeys
{
	static void GetAllKeys(TArray<FKey>& OutKeys);
	// Not in the reference notes; check against the engine.
	static FText GetMenuCategoryDisplayName(const FName CategoryName);
};
