// The key table. Display names are the engine's LOCTEXT sources in an editor build (the
// triggers' digital keys carry "(Digital)" there), in EKeys::Initialize order.
#include "SimulatedKeys.h"

namespace
{
	const FSimulatedKeyDetails SimulatedKeyTable[] = {
		{TEXT("MouseX"), TEXT("Mouse X"), TEXT(""), SimulatedKeyFlags::Axis1D | SimulatedKeyFlags::MouseButton | SimulatedKeyFlags::UpdateAxisWithoutSamples, nullptr},
		{TEXT("MouseY"), TEXT("Mouse Y"), TEXT(""), SimulatedKeyFlags::Axis1D | SimulatedKeyFlags::MouseButton | SimulatedKeyFlags::UpdateAxisWithoutSamples, nullptr},
		{TEXT("Mouse2D"), TEXT("Mouse XY 2D-Axis"), TEXT(""), SimulatedKeyFlags::Axis2D | SimulatedKeyFlags::MouseButton | SimulatedKeyFlags::UpdateAxisWithoutSamples, nullptr},
		{TEXT("MouseScrollUp"), TEXT("Mouse Wheel Up"), TEXT(""), SimulatedKeyFlags::MouseButton | SimulatedKeyFlags::ButtonAxis, nullptr},
		{TEXT("MouseScrollDown"), TEXT("Mouse Wheel Down"), TEXT(""), SimulatedKeyFlags::MouseButton | SimulatedKeyFlags::ButtonAxis, nullptr},
		{TEXT("MouseWheelAxis"), TEXT("Mouse Wheel Axis"), TEXT(""), SimulatedKeyFlags::Axis1D | SimulatedKeyFlags::MouseButton | SimulatedKeyFlags::UpdateAxisWithoutSamples, nullptr},
		{TEXT("LeftMouseButton"), TEXT("Left Mouse Button"), TEXT("LMB"), SimulatedKeyFlags::MouseButton, nullptr},
		{TEXT("RightMouseButton"), TEXT("Right Mouse Button"), TEXT("RMB"), SimulatedKeyFlags::MouseButton, nullptr},
		{TEXT("MiddleMouseButton"), TEXT("Middle Mouse Button"), TEXT("MMB"), SimulatedKeyFlags::MouseButton, nullptr},
		{TEXT("ThumbMouseButton"), TEXT("Thumb Mouse Button"), TEXT(""), SimulatedKeyFlags::MouseButton, nullptr},
		{TEXT("ThumbMouseButton2"), TEXT("Thumb Mouse Button 2"), TEXT(""), SimulatedKeyFlags::MouseButton, nullptr},
		{TEXT("Tab"), TEXT("Tab"), TEXT(""), 0, nullptr},
		{TEXT("Enter"), TEXT("Enter"), TEXT(""), 0, nullptr},
		{TEXT("Pause"), TEXT("Pause"), TEXT(""), 0, nullptr},
		{TEXT("CapsLock"), TEXT("Caps Lock"), TEXT("Caps"), 0, nullptr},
		{TEXT("Escape"), TEXT("Escape"), TEXT("Esc"), 0, nullptr},
		{TEXT("SpaceBar"), TEXT("Space Bar"), TEXT("Space"), 0, nullptr},
		{TEXT("PageUp"), TEXT("Page Up"), TEXT("PgUp"), 0, nullptr},
		{TEXT("PageDown"), TEXT("Page Down"), TEXT("PgDn"), 0, nullptr},
		{TEXT("End"), TEXT("End"), TEXT(""), 0, nullptr},
		{TEXT("Home"), TEXT("Home"), TEXT(""), 0, nullptr},
		{TEXT("Left"), TEXT("Left"), TEXT(""), 0, nullptr},
		{TEXT("Up"), TEXT("Up"), TEXT(""), 0, nullptr},
		{TEXT("Right"), TEXT("Right"), TEXT(""), 0, nullptr},
		{TEXT("Down"), TEXT("Down"), TEXT(""), 0, nullptr},
		{TEXT("Insert"), TEXT("Insert"), TEXT("Ins"), 0, nullptr},
		{TEXT("BackSpace"), TEXT("Backspace"), TEXT(""), 0, nullptr},
		{TEXT("Delete"), TEXT("Delete"), TEXT("Del"), 0, nullptr},
		{TEXT("Zero"), TEXT("0"), TEXT(""), 0, nullptr},
		{TEXT("One"), TEXT("1"), TEXT(""), 0, nullptr},
		{TEXT("Two"), TEXT("2"), TEXT(""), 0, nullptr},
		{TEXT("Three"), TEXT("3"), TEXT(""), 0, nullptr},
		{TEXT("Four"), TEXT("4"), TEXT(""), 0, nullptr},
		{TEXT("Five"), TEXT("5"), TEXT(""), 0, nullptr},
		{TEXT("Six"), TEXT("6"), TEXT(""), 0, nullptr},
		{TEXT("Seven"), TEXT("7"), TEXT(""), 0, nullptr},
		{TEXT("Eight"), TEXT("8"), TEXT(""), 0, nullptr},
		{TEXT("Nine"), TEXT("9"), TEXT(""), 0, nullptr},
		{TEXT("A"), TEXT("A"), TEXT(""), 0, nullptr},
		{TEXT("B"), TEXT("B"), TEXT(""), 0, nullptr},
		{TEXT("C"), TEXT("C"), TEXT(""), 0, nullptr},
		{TEXT("D"), TEXT("D"), TEXT(""), 0, nullptr},
		{TEXT("E"), TEXT("E"), TEXT(""), 0, nullptr},
		{TEXT("F"), TEXT("F"), TEXT(""), 0, nullptr},
		{TEXT("G"), TEXT("G"), TEXT(""), 0, nullptr},
		{TEXT("H"), TEXT("H"), TEXT(""), 0, nullptr},
		{TEXT("I"), TEXT("I"), TEXT(""), 0, nullptr},
		{TEXT("J"), TEXT("J"), TEXT(""), 0, nullptr},
		{TEXT("K"), TEXT("K"), TEXT(""), 0, nullptr},
		{TEXT("L"), TEXT("L"), TEXT(""), 0, nullptr},
		{TEXT("M"), TEXT("M"), TEXT(""), 0, nullptr},
		{TEXT("N"), TEXT("N"), TEXT(""), 0, nullptr},
		{TEXT("O"), TEXT("O"), TEXT(""), 0, nullptr},
		{TEXT("P"), TEXT("P"), TEXT(""), 0, nullptr},
		{TEXT("Q"), TEXT("Q"), TEXT(""), 0, nullptr},
		{TEXT("R"), TEXT("R"), TEXT(""), 0, nullptr},
		{TEXT("S"), TEXT("S"), TEXT(""), 0, nullptr},
		{TEXT("T"), TEXT("T"), TEXT(""), 0, nullptr},
		{TEXT("U"), TEXT("U"), TEXT(""), 0, nullptr},
		{TEXT("V"), TEXT("V"), TEXT(""), 0, nullptr},
		{TEXT("W"), TEXT("W"), TEXT(""), 0, nullptr},
		{TEXT("X"), TEXT("X"), TEXT(""), 0, nullptr},
		{TEXT("Y"), TEXT("Y"), TEXT(""), 0, nullptr},
		{TEXT("Z"), TEXT("Z"), TEXT(""), 0, nullptr},
		{TEXT("NumPadZero"), TEXT("Num 0"), TEXT(""), 0, nullptr},
		{TEXT("NumPadOne"), TEXT("Num 1"), TEXT(""), 0, nullptr},
		{TEXT("NumPadTwo"), TEXT("Num 2"), TEXT(""), 0, nullptr},
		{TEXT("NumPadThree"), TEXT("Num 3"), TEXT(""), 0, nullptr},
		{TEXT("NumPadFour"), TEXT("Num 4"), TEXT(""), 0, nullptr},
		{TEXT("NumPadFive"), TEXT("Num 5"), TEXT(""), 0, nullptr},
		{TEXT("NumPadSix"), TEXT("Num 6"), TEXT(""), 0, nullptr},
		{TEXT("NumPadSeven"), TEXT("Num 7"), TEXT(""), 0, nullptr},
		{TEXT("NumPadEight"), TEXT("Num 8"), TEXT(""), 0, nullptr},
		{TEXT("NumPadNine"), TEXT("Num 9"), TEXT(""), 0, nullptr},
		{TEXT("Multiply"), TEXT("Num *"), TEXT(""), 0, nullptr},
		{TEXT("Add"), TEXT("Num +"), TEXT(""), 0, nullptr},
		{TEXT("Subtract"), TEXT("Num -"), TEXT(""), 0, nullptr},
		{TEXT("Decimal"), TEXT("Num ."), TEXT(""), 0, nullptr},
		{TEXT("Divide"), TEXT("Num /"), TEXT(""), 0, nullptr},
		{TEXT("F1"), TEXT("F1"), TEXT(""), 0, nullptr},
		{TEXT("F2"), TEXT("F2"), TEXT(""), 0, nullptr},
		{TEXT("F3"), TEXT("F3"), TEXT(""), 0, nullptr},
		{TEXT("F4"), TEXT("F4"), TEXT(""), 0, nullptr},
		{TEXT("F5"), TEXT("F5"), TEXT(""), 0, nullptr},
		{TEXT("F6"), TEXT("F6"), TEXT(""), 0, nullptr},
		{TEXT("F7"), TEXT("F7"), TEXT(""), 0, nullptr},
		{TEXT("F8"), TEXT("F8"), TEXT(""), 0, nullptr},
		{TEXT("F9"), TEXT("F9"), TEXT(""), 0, nullptr},
		{TEXT("F10"), TEXT("F10"), TEXT(""), 0, nullptr},
		{TEXT("F11"), TEXT("F11"), TEXT(""), 0, nullptr},
		{TEXT("F12"), TEXT("F12"), TEXT(""), 0, nullptr},
		{TEXT("NumLock"), TEXT("Num Lock"), TEXT(""), 0, nullptr},
		{TEXT("ScrollLock"), TEXT("Scroll Lock"), TEXT(""), 0, nullptr},
		{TEXT("LeftShift"), TEXT("Left Shift"), TEXT(""), SimulatedKeyFlags::ModifierKey, nullptr},
		{TEXT("RightShift"), TEXT("Right Shift"), TEXT(""), SimulatedKeyFlags::ModifierKey, nullptr},
		{TEXT("LeftControl"), TEXT("Left Ctrl"), TEXT(""), SimulatedKeyFlags::ModifierKey, nullptr},
		{TEXT("RightControl"), TEXT("Right Ctrl"), TEXT(""), SimulatedKeyFlags::ModifierKey, nullptr},
		{TEXT("LeftAlt"), TEXT("Left Alt"), TEXT(""), SimulatedKeyFlags::ModifierKey, nullptr},
		{TEXT("RightAlt"), TEXT("Right Alt"), TEXT(""), SimulatedKeyFlags::ModifierKey, nullptr},
		{TEXT("LeftCommand"), TEXT("Left Cmd"), TEXT(""), SimulatedKeyFlags::ModifierKey, nullptr},
		{TEXT("RightCommand"), TEXT("Right Cmd"), TEXT(""), SimulatedKeyFlags::ModifierKey, nullptr},
		{TEXT("Semicolon"), TEXT(";"), TEXT(""), 0, nullptr},
		{TEXT("Equals"), TEXT("="), TEXT(""), 0, nullptr},
		{TEXT("Comma"), TEXT(","), TEXT(""), 0, nullptr},
		{TEXT("Underscore"), TEXT("_"), TEXT(""), 0, nullptr},
		{TEXT("Hyphen"), TEXT("-"), TEXT(""), 0, nullptr},
		{TEXT("Period"), TEXT("."), TEXT(""), 0, nullptr},
		{TEXT("Slash"), TEXT("/"), TEXT(""), 0, nullptr},
		{TEXT("Tilde"), TEXT("`"), TEXT(""), 0, nullptr},
		{TEXT("LeftBracket"), TEXT("["), TEXT(""), 0, nullptr},
		{TEXT("Backslash"), TEXT("\\"), TEXT(""), 0, nullptr},
		{TEXT("RightBracket"), TEXT("]"), TEXT(""), 0, nullptr},
		{TEXT("Apostrophe"), TEXT("'"), TEXT(""), 0, nullptr},
		{TEXT("AnyKey"), TEXT("Any Key"), TEXT(""), 0, nullptr},
		{TEXT("Gamepad_Left2D"), TEXT("Gamepad Left Thumbstick 2D-Axis"), TEXT(""), SimulatedKeyFlags::GamepadKey | SimulatedKeyFlags::Axis2D, nullptr},
		{TEXT("Gamepad_LeftX"), TEXT("Gamepad Left Thumbstick X-Axis"), TEXT(""), SimulatedKeyFlags::GamepadKey | SimulatedKeyFlags::Axis1D, nullptr},
		{TEXT("Gamepad_LeftY"), TEXT("Gamepad Left Thumbstick Y-Axis"), TEXT(""), SimulatedKeyFlags::GamepadKey | SimulatedKeyFlags::Axis1D, nullptr},
		{TEXT("Gamepad_Right2D"), TEXT("Gamepad Right Thumbstick 2D-Axis"), TEXT(""), SimulatedKeyFlags::GamepadKey | SimulatedKeyFlags::Axis2D, nullptr},
		{TEXT("Gamepad_RightX"), TEXT("Gamepad Right Thumbstick X-Axis"), TEXT(""), SimulatedKeyFlags::GamepadKey | SimulatedKeyFlags::Axis1D, nullptr},
		{TEXT("Gamepad_RightY"), TEXT("Gamepad Right Thumbstick Y-Axis"), TEXT(""), SimulatedKeyFlags::GamepadKey | SimulatedKeyFlags::Axis1D, nullptr},
		{TEXT("Gamepad_LeftTriggerAxis"), TEXT("Gamepad Left Trigger Axis"), TEXT(""), SimulatedKeyFlags::GamepadKey | SimulatedKeyFlags::Axis1D, nullptr},
		{TEXT("Gamepad_RightTriggerAxis"), TEXT("Gamepad Right Trigger Axis"), TEXT(""), SimulatedKeyFlags::GamepadKey | SimulatedKeyFlags::Axis1D, nullptr},
		{TEXT("Gamepad_LeftThumbstick"), TEXT("Gamepad Left Thumbstick Button"), TEXT(""), SimulatedKeyFlags::GamepadKey, nullptr},
		{TEXT("Gamepad_RightThumbstick"), TEXT("Gamepad Right Thumbstick Button"), TEXT(""), SimulatedKeyFlags::GamepadKey, nullptr},
		{TEXT("Gamepad_Special_Left"), TEXT("Gamepad Special Left"), TEXT(""), SimulatedKeyFlags::GamepadKey, nullptr},
		{TEXT("Gamepad_Special_Right"), TEXT("Gamepad Special Right"), TEXT(""), SimulatedKeyFlags::GamepadKey, nullptr},
		{TEXT("Gamepad_FaceButton_Bottom"), TEXT("Gamepad Face Button Bottom"), TEXT(""), SimulatedKeyFlags::GamepadKey, nullptr},
		{TEXT("Gamepad_FaceButton_Right"), TEXT("Gamepad Face Button Right"), TEXT(""), SimulatedKeyFlags::GamepadKey, nullptr},
		{TEXT("Gamepad_FaceButton_Left"), TEXT("Gamepad Face Button Left"), TEXT(""), SimulatedKeyFlags::GamepadKey, nullptr},
		{TEXT("Gamepad_FaceButton_Top"), TEXT("Gamepad Face Button Top"), TEXT(""), SimulatedKeyFlags::GamepadKey, nullptr},
		{TEXT("Gamepad_LeftShoulder"), TEXT("Gamepad Left Shoulder"), TEXT(""), SimulatedKeyFlags::GamepadKey, nullptr},
		{TEXT("Gamepad_RightShoulder"), TEXT("Gamepad Right Shoulder"), TEXT(""), SimulatedKeyFlags::GamepadKey, nullptr},
		{TEXT("Gamepad_LeftTrigger"), TEXT("Gamepad Left Trigger (Digital)"), TEXT(""), SimulatedKeyFlags::GamepadKey | SimulatedKeyFlags::ButtonAxis, nullptr},
		{TEXT("Gamepad_RightTrigger"), TEXT("Gamepad Right Trigger (Digital)"), TEXT(""), SimulatedKeyFlags::GamepadKey | SimulatedKeyFlags::ButtonAxis, nullptr},
		{TEXT("Gamepad_DPad_Up"), TEXT("Gamepad D-pad Up"), TEXT(""), SimulatedKeyFlags::GamepadKey, nullptr},
		{TEXT("Gamepad_DPad_Down"), TEXT("Gamepad D-pad Down"), TEXT(""), SimulatedKeyFlags::GamepadKey, nullptr},
		{TEXT("Gamepad_DPad_Right"), TEXT("Gamepad D-pad Right"), TEXT(""), SimulatedKeyFlags::GamepadKey, nullptr},
		{TEXT("Gamepad_DPad_Left"), TEXT("Gamepad D-pad Left"), TEXT(""), SimulatedKeyFlags::GamepadKey, nullptr},
		{TEXT("Gamepad_LeftStick_Up"), TEXT("Gamepad Left Thumbstick Up"), TEXT(""), SimulatedKeyFlags::GamepadKey | SimulatedKeyFlags::ButtonAxis, nullptr},
		{TEXT("Gamepad_LeftStick_Down"), TEXT("Gamepad Left Thumbstick Down"), TEXT(""), SimulatedKeyFlags::GamepadKey | SimulatedKeyFlags::ButtonAxis, nullptr},
		{TEXT("Gamepad_LeftStick_Right"), TEXT("Gamepad Left Thumbstick Right"), TEXT(""), SimulatedKeyFlags::GamepadKey | SimulatedKeyFlags::ButtonAxis, nullptr},
		{TEXT("Gamepad_LeftStick_Left"), TEXT("Gamepad Left Thumbstick Left"), TEXT(""), SimulatedKeyFlags::GamepadKey | SimulatedKeyFlags::ButtonAxis, nullptr},
		{TEXT("Gamepad_RightStick_Up"), TEXT("Gamepad Right Thumbstick Up"), TEXT(""), SimulatedKeyFlags::GamepadKey | SimulatedKeyFlags::ButtonAxis, nullptr},
		{TEXT("Gamepad_RightStick_Down"), TEXT("Gamepad Right Thumbstick Down"), TEXT(""), SimulatedKeyFlags::GamepadKey | SimulatedKeyFlags::ButtonAxis, nullptr},
		{TEXT("Gamepad_RightStick_Right"), TEXT("Gamepad Right Thumbstick Right"), TEXT(""), SimulatedKeyFlags::GamepadKey | SimulatedKeyFlags::ButtonAxis, nullptr},
		{TEXT("Gamepad_RightStick_Left"), TEXT("Gamepad Right Thumbstick Left"), TEXT(""), SimulatedKeyFlags::GamepadKey | SimulatedKeyFlags::ButtonAxis, nullptr},
		{TEXT("Tilt"), TEXT("Tilt"), TEXT(""), SimulatedKeyFlags::Axis3D | SimulatedKeyFlags::UpdateAxisWithoutSamples, TEXT("Motion")},
		{TEXT("Vive_Left_Trigger_Axis"), TEXT("Vive (L) Trigger Axis"), TEXT(""), SimulatedKeyFlags::GamepadKey | SimulatedKeyFlags::Axis1D | SimulatedKeyFlags::NotBlueprintBindableKey, TEXT("Vive")},
	};
}

FString FSimulatedKeyDetails::GetDisplayName(bool bLongDisplayName) const
{
	return !bLongDisplayName && ShortDisplayName[0] != 0 ? FString(ShortDisplayName) : FString(LongDisplayName);
}

FString FSimulatedKeyDetails::GetMenuCategory() const
{
	if (ExplicitMenuCategory)
	{
		return ExplicitMenuCategory;
	}
	if (IsVirtual())
	{
		return TEXT("Virtual");
	}
	if (IsGamepadKey())
	{
		return TEXT("Gamepad");
	}
	return IsMouseButton() ? TEXT("Mouse") : TEXT("Key");
}

const FSimulatedKeyDetails* FSimulatedKeys::Find(const FString& KeyName)
{
	// FName comparison: case does not matter. NAME_None is EKeys::Invalid.
	if (KeyName.IsEmpty() || KeyName.Equals(TEXT("None"), ESearchCase::IgnoreCase))
	{
		return nullptr;
	}
	for (const FSimulatedKeyDetails& Key : SimulatedKeyTable)
	{
		if (KeyName.Equals(Key.Name, ESearchCase::IgnoreCase))
		{
			return &Key;
		}
	}
	return nullptr;
}

FString FSimulatedKeys::GetDisplayName(const FString& KeyName, bool bLongDisplayName)
{
	const FSimulatedKeyDetails* Key = Find(KeyName);
	return Key ? Key->GetDisplayName(bLongDisplayName) : KeyName;
}

FString FSimulatedKeys::GetMenuCategory(const FString& KeyName)
{
	const FSimulatedKeyDetails* Key = Find(KeyName);
	return Key ? Key->GetMenuCategory() : FString(TEXT("Key"));
}

bool FSimulatedKeys::CanBeInputKeyEvent(const FString& KeyName)
{
	const FSimulatedKeyDetails* Key = Find(KeyName);
	return Key && Key->IsBindableInBlueprints() && !Key->IsAnalog() && !Key->IsGesture();
}

bool FSimulatedKeys::CanBeInputAxisKeyEvent(const FString& KeyName)
{
	const FSimulatedKeyDetails* Key = Find(KeyName);
	return Key && Key->IsBindableInBlueprints() && Key->IsAxis1D();
}

TArray<const FSimulatedKeyDetails*> FSimulatedKeys::GetAllKeys()
{
	TArray<const FSimulatedKeyDetails*> Keys;
	for (const FSimulatedKeyDetails& Key : SimulatedKeyTable)
	{
		Keys.Add(&Key);
	}
	return Keys;
}
