#pragma once

#include "CoreMinimal.h"
#include "EdGraph/EdGraphPin.h"
#include "EdGraph/EdGraphSchema.h"
#include "UObject/ObjectMacros.h"

class FProperty;
class UEdGraphPin;
class UFunction;

UCLASS()
class UEdGraphSchema_K2 : public UEdGraphSchema
{
	GENERATED_BODY()

public:
	static const FName PC_Exec;
	static const FName PC_Boolean;
	static const FName PC_Byte;
	static const FName PC_Class;
	static const FName PC_SoftClass;
	static const FName PC_Int;
	static const FName PC_Int64;
	static const FName PC_Float;
	static const FName PC_Double;
	static const FName PC_Real;
	static const FName PC_Name;
	static const FName PC_Delegate;
	static const FName PC_MCDelegate;
	static const FName PC_Object;
	static const FName PC_Interface;
	static const FName PC_SoftObject;
	static const FName PC_String;
	static const FName PC_Text;
	static const FName PC_Struct;
	static const FName PC_Wildcard;
	static const FName PC_Enum;
	static const FName PC_FieldPath;

	static const FName PSC_Self;
	static const FName PSC_Index;
	static const FName PSC_Bitmask;

	virtual bool TryCreateConnection(UEdGraphPin* A, UEdGraphPin* B) const;
	virtual const FPinConnectionResponse CanCreateConnection(const UEdGraphPin* A, const UEdGraphPin* B) const;
	virtual void TrySetDefaultValue(UEdGraphPin& Pin, const FString& NewDefaultValue, bool bMarkAsModified = true) const;
	virtual FString IsPinDefaultValid(const UEdGraphPin* Pin, const FString& NewDefaultValue, TObjectPtr<UObject> NewDefaultObject, const FText& InNewDefaultText) const;
	bool ConvertPropertyToPinType(const FProperty* Property, /*out*/ FEdGraphPinType& TypeOut) const;
	// Not in the reference notes (unreal-behaviour-blueprints.md §3.5 names it); check against the
	// engine.
	void GetPinDefaultValuesFromString(const FEdGraphPinType& PinType, UObject* OwningObject, const FString& NewValue, FString& UseDefaultValue,
		TObjectPtr<UObject>& UseDefaultObject, FText& UseDefaultText, bool bPreserveTextIdentity = true) const;

	static bool FunctionCanBePlacedAsEvent(const UFunction* InFunction);
	static bool CanUserKismetCallFunction(const UFunction* Function);
	static bool CanKismetOverrideFunction(const UFunction* Function);
};
