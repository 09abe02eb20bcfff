// The Blueprint pin and variable type vocabulary: the short type texts AI clients write
// ("float[]", "map<name,string>", "object"), the pin type they stand for, and the one JSON shape
// in which every tool reports a pin type.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "EditorPort/ZorvekMCPBridgeTypeLookup.h"

// The pin categories of the Blueprint schema, spelled as UEdGraphSchema_K2 spells them, so a
// category read from the engine and one written here compare equal.
struct FZorvekMCPBridgePinCategories
{
	static const FName PC_Exec;
	static const FName PC_Boolean;
	static const FName PC_Int;
	static const FName PC_Real;
	static const FName PC_Float;
	static const FName PC_Double;
	static const FName PC_String;
	static const FName PC_Name;
	static const FName PC_Text;
	static const FName PC_Struct;
	static const FName PC_Object;
	static const FName PC_Class;
};

// Mirrors the engine's EPinContainerType (same values).
enum class EZorvekMCPBridgePinContainerType : uint8
{
	None = 0,
	Array = 1,
	Set = 2,
	Map = 3
};

// Mirrors FEdGraphTerminalType: one non-container type, used for the value type of a map.
struct FZorvekMCPBridgeTerminalType
{
	FName TerminalCategory;
	FName TerminalSubCategory;
	FZorvekMCPBridgeTypeIdentity TerminalSubCategoryObject;
	bool bTerminalIsConst = false;
	bool bTerminalIsWeakPointer = false;
	bool bTerminalIsUObjectWrapper = false;
};

// Mirrors FEdGraphPinType. For a map, the category, sub-category and sub-category object
// describe the key and PinValueType the value. Delegate signatures (the member reference of
// delegate pins) are not carried.
struct FZorvekMCPBridgePinType
{
	FName PinCategory;
	// The precision of real pins ("float" or "double"); also "self", "index", "bitmask"...
	FName PinSubCategory;
	// The struct of struct pins, the class of object and class pins, the enum of enum pins.
	FZorvekMCPBridgeTypeIdentity PinSubCategoryObject;
	FZorvekMCPBridgeTerminalType PinValueType;
	EZorvekMCPBridgePinContainerType ContainerType = EZorvekMCPBridgePinContainerType::None;
	bool bIsReference = false;
	bool bIsConst = false;
	bool bIsWeakPointer = false;
	bool bIsUObjectWrapper = false;
	bool bSerializeAsSinglePrecisionFloat = false;

	bool IsContainer() const { return ContainerType != EZorvekMCPBridgePinContainerType::None; }
	bool IsArray() const { return ContainerType == EZorvekMCPBridgePinContainerType::Array; }
	bool IsSet() const { return ContainerType == EZorvekMCPBridgePinContainerType::Set; }
	bool IsMap() const { return ContainerType == EZorvekMCPBridgePinContainerType::Map; }
	void ResetToDefaults() { *this = FZorvekMCPBridgePinType(); }
};

enum class EZorvekMCPBridgePinDirection : uint8
{
	Input,
	Output
};

// A pin of a node in a graph, as the reader and the node tools report it.
struct FZorvekMCPBridgePinSnapshot
{
	FName PinName;
	EZorvekMCPBridgePinDirection Direction = EZorvekMCPBridgePinDirection::Input;
	FZorvekMCPBridgePinType PinType;
	// The pin's default as text; empty when it has none.
	FString DefaultValue;
};

// Mirrors FUserPinInfo: a pin the user declared on a function entry or result node or on a
// custom event.
struct FZorvekMCPBridgeUserPinInfo
{
	FName PinName;
	FZorvekMCPBridgePinType PinType;
	EZorvekMCPBridgePinDirection DesiredPinDirection = EZorvekMCPBridgePinDirection::Input;
	FString PinDefaultValue;
};

// One parameter or pin descriptor of a request ({"Name", "Type", "ObjectClassPath"}) after parsing.
struct FBlueprintParamSpec
{
	FName Name;
	FZorvekMCPBridgePinType PinType;
	// The normalised type word, e.g. "float[]" or "map<name,string>".
	FString TypeString;
};

namespace ZorvekMCPBridgePinTypes
{
	// The class an object or class type refers to when the caller names none.
	extern const TCHAR* const DefaultAllowedClassPath;

	// Turns a type text ("Float", "array<vector>", "set<name>", "map<name,string>", "object") into
	// a pin type and its normalised word. Object and class types refer to AllowedClassPath
	// (Actor when empty), loaded through the lookup. On failure OutError holds the message for
	// the caller, quoting the text as passed, and the other outputs are left untouched.
	bool ParseBlueprintVariableType(const IZorvekMCPBridgeTypeLookup& TypeLookup, const FString& TypeText, const FString& AllowedClassPath,
		FZorvekMCPBridgePinType& OutPinType, FString& OutTypeString, FString& OutError);

	// Reads the descriptor array Request[FieldName] ("Parameters", "Inputs", "Outputs"). A missing
	// array is an empty list. The first bad entry fails the whole array with its message and
	// leaves OutSpecs untouched.
	bool ParseParamSpecArray(const IZorvekMCPBridgeTypeLookup& TypeLookup, const TSharedPtr<FJsonObject>& Request, const FString& FieldName,
		TArray<FBlueprintParamSpec>& OutSpecs, FString& OutError);

	// The inner text of "<prefix><...>", trimmed; false when Text is not of that form. The prefix
	// is compared without regard to case.
	bool SplitContainerInner(const FString& Text, const TCHAR* Prefix, FString& OutInner);

	// Splits "key,value" at the first comma outside angle brackets; false when there is none or
	// either side is empty after trimming.
	bool SplitMapKeyValue(const FString& InnerText, FString& OutKey, FString& OutValue);

	// The read-back text of a pin type: "float", "Vector", "array<int>", "map<name,Actor>"...
	FString DescribePinType(const FZorvekMCPBridgePinType& PinType);
	// The text of one terminal type: the object's short name, the precision of a real, or the category.
	FString DescribeTerminalType(const FName& Category, const FName& SubCategory, const FZorvekMCPBridgeTypeIdentity& SubCategoryObject);
	// "none", "array", "set", "map", or "unknown".
	FString GetContainerTypeWord(EZorvekMCPBridgePinContainerType ContainerType);

	TSharedPtr<FJsonObject> MakeTerminalTypeJson(const FName& Category, const FName& SubCategory, const FZorvekMCPBridgeTypeIdentity& SubCategoryObject);
	TSharedPtr<FJsonObject> MakeTerminalTypeJson(const FZorvekMCPBridgeTerminalType& TerminalType);
	TSharedPtr<FJsonObject> MakePinTypeJson(const FZorvekMCPBridgePinType& PinType);
	TSharedPtr<FJsonObject> MakePinJson(const FZorvekMCPBridgePinSnapshot& Pin);
	TSharedPtr<FJsonObject> MakeUserPinJson(const FZorvekMCPBridgeUserPinInfo& UserPin);
	TSharedPtr<FJsonObject> MakeParamSpecJson(const FBlueprintParamSpec& Spec);
	TArray<TSharedPtr<FJsonValue>> MakeParamSpecJson(const TArray<FBlueprintParamSpec>& Specs);
}
