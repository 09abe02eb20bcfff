#pragma once

#include "CoreMinimal.h"
#include "Engine/Blueprint.h"
#include "Templates/SubclassOf.h"

class UBlueprintGeneratedClass;

class FKismetEditorUtilities
{
public:
	static UBlueprint* CreateBlueprint(UClass* ParentClass, UObject* Outer, const FName NewBPName, enum EBlueprintType BlueprintType, FName CallingContext = NAME_None);
	static UBlueprint* CreateBlueprint(UClass* ParentClass, UObject* Outer, const FName NewBPName, enum EBlueprintType BlueprintType, TSubclassOf<UBlueprint> BlueprintClassType,
		TSubclassOf<UBlueprintGeneratedClass> BlueprintGeneratedClassType, FName CallingContext = NAME_None);
	static bool CanCreateBlueprintOfClass(const UClass* Class);
};
