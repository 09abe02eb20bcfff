// The engine's key table (EKeys with their FKeyDetails) as far as the input nodes need it:
// names, long and short display names, flags and menu categories. Names resolve as FKey's
// FName lookup does, without regard to case; a name the table lacks is an invalid key for
// which every predicate is false and the display name is the name itself.
#pragma once

#include "CoreMinimal.h"

// FKeyDetails::EKeyFlags, same values.
namespace SimulatedKeyFlags
{
	constexpr uint32 GamepadKey = 1;
	constexpr uint32 Touch = 2;
	constexpr uint32 MouseButton = 4;
	constexpr uint32 ModifierKey = 8;
	constexpr uint32 NotBlueprintBindableKey = 16;
	constexpr uint32 Axis1D = 32;
	constexpr uint32 Axis3D = 64;
	constexpr uint32 UpdateAxisWithoutSamples = 128;
	constexpr uint32 NotActionBindableKey = 256;
	constexpr uint32 Deprecated = 512;
	constexpr uint32 ButtonAxis = 1024;
	constexpr uint32 Axis2D = 2048;
	constexpr uint32 Gesture = 4096;
	constexpr uint32 Virtual = 8192;
}

// One entry of EKeys::InputKeys.
struct FSimulatedKeyDetails
{
	// The EKeys member name: SpaceBar, LeftMouseButton, Gamepad_LeftX.
	const TCHAR* Name;
	const TCHAR* LongDisplayName;
	// Empty when the key has none (GetDisplayName(false) then gives the long name).
	const TCHAR* ShortDisplayName;
	uint32 Flags;
	// Set only where the engine names one explicitly (Motion, Vive); otherwise derived.
	const TCHAR* ExplicitMenuCategory;

	bool IsAxis1D() const { return (Flags & SimulatedKeyFlags::Axis1D) != 0; }
	bool IsAxis2D() const { return (Flags & SimulatedKeyFlags::Axis2D) != 0; }
	bool IsAxis3D() const { return (Flags & SimulatedKeyFlags::Axis3D) != 0; }
	bool IsButtonAxis() const { return (Flags & SimulatedKeyFlags::ButtonAxis) != 0; }
	// Button-axis keys are digital: only the three axis kinds count as analog.
	bool IsAnalog() const { return IsAxis1D() || IsAxis2D() || IsAxis3D(); }
	bool IsDigital() const { return !IsAnalog(); }
	bool IsGamepadKey() const { return (Flags & SimulatedKeyFlags::GamepadKey) != 0; }
	bool IsMouseButton() const { return (Flags & SimulatedKeyFlags::MouseButton) != 0; }
	bool IsModifierKey() const { return (Flags & SimulatedKeyFlags::ModifierKey) != 0; }
	bool IsTouch() const { return (Flags & SimulatedKeyFlags::Touch) != 0; }
	bool IsGesture() const { return (Flags & SimulatedKeyFlags::Gesture) != 0; }
	bool IsVirtual() const { return (Flags & SimulatedKeyFlags::Virtual) != 0; }
	bool IsDeprecated() const { return (Flags & SimulatedKeyFlags::Deprecated) != 0; }
	bool IsBindableInBlueprints() const { return (Flags & (SimulatedKeyFlags::NotBlueprintBindableKey | SimulatedKeyFlags::Deprecated)) == 0; }
	bool IsBindableToActions() const { return (Flags & (SimulatedKeyFlags::NotActionBindableKey | SimulatedKeyFlags::Deprecated)) == 0; }
	// GetDisplayName(bLongDisplayName).
	FString GetDisplayName(bool bLongDisplayName = true) const;
	FString GetMenuCategory() const;
};

class FSimulatedKeys
{
public:
	// The key of that name, any case; null for a name EKeys does not know (NAME_None included).
	static const FSimulatedKeyDetails* Find(const FString& KeyName);
	// FKey(Name).GetDisplayName(bLong): the raw name for unknown keys.
	static FString GetDisplayName(const FString& KeyName, bool bLongDisplayName = true);
	// FKey(Name).GetMenuCategory(): "Key" for unknown keys.
	static FString GetMenuCategory(const FString& KeyName);
	// What the input nodes' menus offer: UK2Node_InputKey takes keys that are bindable in
	// Blueprints, not analog and not gestures; UK2Node_InputAxisKeyEvent bindable 1D axes.
	static bool CanBeInputKeyEvent(const FString& KeyName);
	static bool CanBeInputAxisKeyEvent(const FString& KeyName);
	// The whole table in EKeys::Initialize order.
	static TArray<const FSimulatedKeyDetails*> GetAllKeys();
};
