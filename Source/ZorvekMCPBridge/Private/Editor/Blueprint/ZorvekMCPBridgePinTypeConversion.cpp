#include "Editor/Blueprint/ZorvekMCPBridgePinTypeConversion.h"

#include "EdGraphSchema_K2.h"
#include "K2Node_EditablePinBase.h"
#include "UObject/Object.h"
#include "UObject/UObjectGlobals.h"

namespace
{
	struct FCategoryPair
	{
		const FName* Portable;
		const FName* Engine;
	};

	// The portable names spell the schema's names; pairing them keeps the two from drifting apart
	// and hands the engine its own FName for every category it knows.
	const FCategoryPair CategoryPairs[] =
	{
		{&FZorvekMCPBridgePinCategories::PC_Exec, &UEdGraphSchema_K2::PC_Exec},
		{&FZorvekMCPBridgePinCategories::PC_Boolean, &UEdGraphSchema_K2::PC_Boolean},
		{&FZorvekMCPBridgePinCategories::PC_Int, &UEdGraphSchema_K2::PC_Int},
		{&FZorvekMCPBridgePinCategories::PC_Real, &UEdGraphSchema_K2::PC_Real},
		{&FZorvekMCPBridgePinCategories::PC_Float, &UEdGraphSchema_K2::PC_Float},
		{&FZorvekMCPBridgePinCategories::PC_Double, &UEdGraphSchema_K2::PC_Double},
		{&FZorvekMCPBridgePinCategories::PC_String, &UEdGraphSchema_K2::PC_String},
		{&FZorvekMCPBridgePinCategories::PC_Name, &UEdGraphSchema_K2::PC_Name},
		{&FZorvekMCPBridgePinCategories::PC_Text, &UEdGraphSchema_K2::PC_Text},
		{&FZorvekMCPBridgePinCategories::PC_Struct, &UEdGraphSchema_K2::PC_Struct},
		{&FZorvekMCPBridgePinCategories::PC_Object, &UEdGraphSchema_K2::PC_Object},
		{&FZorvekMCPBridgePinCategories::PC_Class, &UEdGraphSchema_K2::PC_Class},
	};

	// Categories and sub-categories share one name space (a real's precision is PC_Float or
	// PC_Double); names the table does not know pass through unchanged.
	FName ToEngineCategoryName(const FName& PortableName)
	{
		for (const FCategoryPair& Pair : CategoryPairs)
		{
			if (PortableName == *Pair.Portable)
			{
				return *Pair.Engine;
			}
		}
		return PortableName;
	}

	FName FromEngineCategoryName(const FName& EngineName)
	{
		for (const FCategoryPair& Pair : CategoryPairs)
		{
			if (EngineName == *Pair.Engine)
			{
				return *Pair.Portable;
			}
		}
		return EngineName;
	}

	// Structs, classes and enums all live at full object paths; StaticLoadObject finds one in
	// memory (the native base structures always are) or loads its package.
	bool ResolveTypeObject(const FZorvekMCPBridgeTypeIdentity& Identity, UObject*& OutObject, FString& OutError)
	{
		OutObject = nullptr;
		if (!Identity.IsSet())
		{
			return true;
		}
		OutObject = StaticLoadObject(UObject::StaticClass(), nullptr, *Identity.PathName);
		if (OutObject == nullptr)
		{
			OutError = FString::Printf(TEXT("Could not load the type object of a Blueprint pin type: %s"), *Identity.PathName);
			return false;
		}
		return true;
	}

	EZorvekMCPBridgePinDirection FromEngineDirection(EEdGraphPinDirection Direction)
	{
		return Direction == EGPD_Output ? EZorvekMCPBridgePinDirection::Output : EZorvekMCPBridgePinDirection::Input;
	}
}

FZorvekMCPBridgeTypeIdentity ZorvekMCPBridgePinTypeConversion::MakeTypeIdentity(const UObject* Object)
{
	if (Object == nullptr)
	{
		return FZorvekMCPBridgeTypeIdentity();
	}
	return FZorvekMCPBridgeTypeIdentity(Object->GetPathName(), Object->GetName());
}

FZorvekMCPBridgeTerminalType ZorvekMCPBridgePinTypeConversion::FromEngineTerminalType(const FEdGraphTerminalType& TerminalType)
{
	FZorvekMCPBridgeTerminalType Result;
	Result.TerminalCategory = FromEngineCategoryName(TerminalType.TerminalCategory);
	Result.TerminalSubCategory = FromEngineCategoryName(TerminalType.TerminalSubCategory);
	// A weak reference whose object is gone yields the empty identity, which reads back as "no object".
	Result.TerminalSubCategoryObject = MakeTypeIdentity(TerminalType.TerminalSubCategoryObject.Get());
	Result.bTerminalIsConst = TerminalType.bTerminalIsConst;
	Result.bTerminalIsWeakPointer = TerminalType.bTerminalIsWeakPointer;
	Result.bTerminalIsUObjectWrapper = TerminalType.bTerminalIsUObjectWrapper;
	return Result;
}

FZorvekMCPBridgePinType ZorvekMCPBridgePinTypeConversion::FromEnginePinType(const FEdGraphPinType& PinType)
{
	FZorvekMCPBridgePinType Result;
	Result.PinCategory = FromEngineCategoryName(PinType.PinCategory);
	Result.PinSubCategory = FromEngineCategoryName(PinType.PinSubCategory);
	Result.PinSubCategoryObject = MakeTypeIdentity(PinType.PinSubCategoryObject.Get());
	Result.PinValueType = FromEngineTerminalType(PinType.PinValueType);
	// Same values on both sides; a value the portable enum lacks reads back as "unknown".
	Result.ContainerType = static_cast<EZorvekMCPBridgePinContainerType>(static_cast<uint8>(PinType.ContainerType));
	Result.bIsReference = PinType.bIsReference;
	Result.bIsConst = PinType.bIsConst;
	Result.bIsWeakPointer = PinType.bIsWeakPointer;
	Result.bIsUObjectWrapper = PinType.bIsUObjectWrapper;
	Result.bSerializeAsSinglePrecisionFloat = PinType.bSerializeAsSinglePrecisionFloat;
	return Result;
}

bool ZorvekMCPBridgePinTypeConversion::ToEngineTerminalType(const FZorvekMCPBridgeTerminalType& TerminalType, FEdGraphTerminalType& OutTerminalType, FString& OutError)
{
	UObject* SubCategoryObject = nullptr;
	if (!ResolveTypeObject(TerminalType.TerminalSubCategoryObject, SubCategoryObject, OutError))
	{
		return false;
	}
	FEdGraphTerminalType Result;
	Result.TerminalCategory = ToEngineCategoryName(TerminalType.TerminalCategory);
	Result.TerminalSubCategory = ToEngineCategoryName(TerminalType.TerminalSubCategory);
	Result.TerminalSubCategoryObject = SubCategoryObject;
	Result.bTerminalIsConst = TerminalType.bTerminalIsConst;
	Result.bTerminalIsWeakPointer = TerminalType.bTerminalIsWeakPointer;
	Result.bTerminalIsUObjectWrapper = TerminalType.bTerminalIsUObjectWrapper;
	OutTerminalType = Result;
	return true;
}

bool ZorvekMCPBridgePinTypeConversion::ToEnginePinType(const FZorvekMCPBridgePinType& PinType, FEdGraphPinType& OutPinType, FString& OutError)
{
	if (PinType.ContainerType > EZorvekMCPBridgePinContainerType::Map)
	{
		OutError = FString::Printf(TEXT("Unknown Blueprint pin container kind %d."), static_cast<int32>(PinType.ContainerType));
		return false;
	}
	UObject* SubCategoryObject = nullptr;
	if (!ResolveTypeObject(PinType.PinSubCategoryObject, SubCategoryObject, OutError))
	{
		return false;
	}
	FEdGraphTerminalType ValueType;
	if (PinType.IsMap() && !ToEngineTerminalType(PinType.PinValueType, ValueType, OutError))
	{
		return false;
	}

	FEdGraphPinType Result;
	Result.PinCategory = ToEngineCategoryName(PinType.PinCategory);
	Result.PinSubCategory = ToEngineCategoryName(PinType.PinSubCategory);
	Result.PinSubCategoryObject = SubCategoryObject;
	Result.PinValueType = ValueType;
	Result.ContainerType = static_cast<EPinContainerType>(static_cast<uint8>(PinType.ContainerType));
	Result.bIsReference = PinType.bIsReference;
	Result.bIsConst = PinType.bIsConst;
	Result.bIsWeakPointer = PinType.bIsWeakPointer;
	Result.bIsUObjectWrapper = PinType.bIsUObjectWrapper;
	Result.bSerializeAsSinglePrecisionFloat = PinType.bSerializeAsSinglePrecisionFloat;
	OutPinType = Result;
	return true;
}

FZorvekMCPBridgePinSnapshot ZorvekMCPBridgePinTypeConversion::MakePinSnapshot(const UEdGraphPin& Pin)
{
	FZorvekMCPBridgePinSnapshot Snapshot;
	Snapshot.PinName = Pin.PinName;
	Snapshot.Direction = FromEngineDirection(Pin.Direction);
	Snapshot.PinType = FromEnginePinType(Pin.PinType);
	// Covers object and text defaults too, which DefaultValue alone leaves empty.
	Snapshot.DefaultValue = Pin.GetDefaultAsString();
	return Snapshot;
}

FZorvekMCPBridgeUserPinInfo ZorvekMCPBridgePinTypeConversion::MakeUserPinInfo(const FUserPinInfo& UserPin)
{
	FZorvekMCPBridgeUserPinInfo Info;
	Info.PinName = UserPin.PinName;
	Info.PinType = FromEnginePinType(UserPin.PinType);
	Info.DesiredPinDirection = FromEngineDirection(UserPin.DesiredPinDirection);
	Info.PinDefaultValue = UserPin.PinDefaultValue;
	return Info;
}
