#pragma once

#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"

class UStruct;
class UClass;

// Base of the reflected properties (FProperty and its subclasses).
class FField
{
public:
	virtual ~FField();
	FName GetFName() const;
	FString GetName() const;
	// Not in the reference notes; check against the engine.
	virtual FString GetAuthoredName() const;
	UStruct* GetOwnerStruct() const;
	UClass* GetOwnerClass() const;
};

template <typename FieldType>
FieldType* CastField(FField* Src);
template <typename FieldType>
const FieldType* CastField(const FField* Src);
template <typename FieldType>
FieldType* CastFieldChecked(FField* Src);
