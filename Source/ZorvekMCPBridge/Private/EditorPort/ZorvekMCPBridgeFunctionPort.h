#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"
#include "Extensions/ZorvekMCPBridgeVessaTypes.h"
#include "Internationalization/Text.h"
#include "Templates/UniquePtr.h"

// Parameter flag bits with the engine's values (EPropertyFlags).
namespace ZorvekMCPBridgeParameterFlags
{
	constexpr uint64 Parm = 0x80;
	constexpr uint64 OutParm = 0x100;
	constexpr uint64 ReturnParm = 0x400;
	constexpr uint64 ReferenceParm = 0x8000000;
}

// The engine's property class of a parameter or struct field (FArrayProperty, FStrProperty...),
// as CastField tells them apart. Object covers FObjectProperty and its FClassProperty; soft, weak
// and lazy references are OtherObjectReference.
enum class EZorvekMCPBridgeFieldClass : uint8
{
	Other,
	Array,
	Str,
	Name,
	Text,
	Int,
	Int8,
	Int16,
	Int64,
	UInt16,
	UInt32,
	UInt64,
	Float,
	Double,
	Bool,
	Struct,
	Enum,
	Byte,
	Object,
	OtherObjectReference,
	Set,
	Map
};

// One property of a function (a parameter) or of a struct (a field), described without its value.
struct FZorvekMCPBridgeFieldInfo
{
	// The authored name.
	FString Name;
	uint64 Flags = 0;
	EZorvekMCPBridgeFieldClass FieldClass = EZorvekMCPBridgeFieldClass::Other;
	// Byte properties: whether an enum is attached (TEnumAsByte).
	bool bByteHasEnum = false;
	// Structs: the struct's authored name and path, and its fields in field order (super struct's
	// after its own, as TFieldIterator walks them). Nested structs are described a few levels deep.
	FString StructName;
	FString StructPath;
	TArray<FZorvekMCPBridgeFieldInfo> StructFields;
	// Arrays: the inner property (one element).
	TArray<FZorvekMCPBridgeFieldInfo> Inner;
};

// A UFunction: its name, flags, the metadata asked for, and its parameters (the properties with
// CPF_Parm, in declaration order; a Blueprint function's locals are not parameters).
struct FZorvekMCPBridgeFunctionInfo
{
	FString Name;
	uint32 FunctionFlags = 0;
	// Only the keys asked for that the function has (HasMetaData), a value-less key with "".
	TMap<FString, FString> MetaData;
	TArray<FZorvekMCPBridgeFieldInfo> Parameters;
};

// The memory of one call: every parameter of the function, initialised. Destroying the block
// destroys the values.
class IZorvekMCPBridgeParameterBlock
{
public:
	virtual ~IZorvekMCPBridgeParameterBlock() = default;

	virtual int32 GetParameterCount() const = 0;
	// FJsonObjectConverter::JsonObjectToUStruct into a struct parameter.
	virtual bool ImportJsonObject(int32 ParameterIndex, const TSharedPtr<FJsonObject>& Object) = 0;
	// FJsonObjectConverter::JsonValueToUProperty into any parameter.
	virtual bool ImportJsonValue(int32 ParameterIndex, const TSharedPtr<FJsonValue>& Value) = 0;
	// Sets a string or name parameter to the text as it is.
	virtual bool SetStringValue(int32 ParameterIndex, const FString& Text) = 0;
	// A string, name or text parameter as a plain string (FName::ToString, FText::ToString).
	virtual FString GetStringValue(int32 ParameterIndex) const = 0;
	// FJsonObjectConverter::UPropertyToJsonValue of a parameter; null when the converter fails.
	virtual TSharedPtr<FJsonValue> ExportJsonValue(int32 ParameterIndex) const = 0;
	// Object and class parameters (FObjectPropertyBase, FClassProperty among them): sets the
	// object (a class for a class parameter) when it is of the parameter's class, or null for an
	// invalid handle. False for other parameter kinds and for an object of the wrong class.
	virtual bool SetObjectValue(int32 ParameterIndex, FZorvekMCPBridgeObjectHandle Object) = 0;
	// The object an object or class parameter holds; invalid for null and for other kinds.
	virtual FZorvekMCPBridgeObjectHandle GetObjectValue(int32 ParameterIndex) const = 0;
};

// An open undo transaction; closing it (destroying the object) ends it.
class IZorvekMCPBridgeTransaction
{
public:
	virtual ~IZorvekMCPBridgeTransaction() = default;
};

// An Editor Utility Blueprint as the Asset Registry lists it, with its ParentClass tag.
struct FZorvekMCPBridgeUtilityBlueprintInfo
{
	FString ObjectPath;
	// Export-text form, e.g. /Script/CoreUObject.Class'/Script/ZorvekMCPBridge.ZorvekMCPBridgeVessaExtension'.
	FString ParentClassTag;
};

// Functions of classes and calls through reflection, and what the Vessa extension registry needs
// from the editor: extension classes, Editor Utility Blueprints, live extension instances.
class IZorvekMCPBridgeFunctions
{
public:
	virtual ~IZorvekMCPBridgeFunctions() = default;

	// Every function of the class, inherited ones included (TFieldIterator<UFunction> with the
	// default flags: the class's own first, then its super class's). False for an unknown class.
	virtual bool GetClassFunctions(const FString& ClassPath, const TArray<FString>& MetaDataKeys, TArray<FZorvekMCPBridgeFunctionInfo>& OutFunctions) const = 0;
	// UClass::FindFunctionByName with super classes (names compare without regard to case).
	virtual bool FindFunction(const FString& ClassPath, const FString& FunctionName, const TArray<FString>& MetaDataKeys, FZorvekMCPBridgeFunctionInfo& OutFunction) const = 0;
	// A zeroed block for the whole function frame with every parameter initialised; null when the
	// class has no such function.
	virtual TUniquePtr<IZorvekMCPBridgeParameterBlock> CreateParameterBlock(const FString& ClassPath, const FString& FunctionName) = 0;
	// UObject::ProcessEvent with the block; outputs land in the block.
	virtual void CallFunction(FZorvekMCPBridgeObjectHandle Object, IZorvekMCPBridgeParameterBlock& Block) = 0;
	// FScopedTransaction with that title until the returned object is destroyed.
	virtual TUniquePtr<IZorvekMCPBridgeTransaction> BeginTransaction(const FText& Title) = 0;

	// Loaded classes (GetObjectsOfClass of UClass) that are children of BaseClassPath, not the
	// class itself, and neither abstract, deprecated, superseded (newer version) nor a Blueprint
	// skeleton class.
	virtual TArray<FString> GetLoadedDerivedClasses(const FString& BaseClassPath) const = 0;
	virtual FString GetClassDisplayName(const FString& ClassPath) const = 0;
	// IAssetRegistry::IsLoadingAssets.
	virtual bool IsAssetRegistryLoading() const = 0;
	// Assets of class /Script/Blutility.EditorUtilityBlueprint, subclasses included.
	virtual TArray<FZorvekMCPBridgeUtilityBlueprintInfo> GetEditorUtilityBlueprints() const = 0;
	// Loads the Blueprint asset and gives its generated class's path; false when it does not load.
	virtual bool LoadBlueprintGeneratedClass(const FString& BlueprintObjectPath, FString& OutClassPath) = 0;

	// A new extension instance in the transient package, kept from garbage collection until
	// ReleaseExtensionInstances; invalid when the class cannot be instantiated.
	virtual FZorvekMCPBridgeObjectHandle CreateExtensionInstance(const FString& ClassPath) = 0;
	virtual void ReleaseExtensionInstances() = 0;
	// Still alive and an extension.
	virtual bool IsValidExtension(FZorvekMCPBridgeObjectHandle Extension) const = 0;
	virtual bool GetExtensionDefinition(FZorvekMCPBridgeObjectHandle Extension, FZorvekMCPBridgeVessaDefinitionData& OutDefinition) const = 0;
	// UZorvekMCPBridgeVessaExtension::IsEnabled (the bEnabled property).
	virtual bool IsExtensionEnabled(FZorvekMCPBridgeObjectHandle Extension) const = 0;
};
