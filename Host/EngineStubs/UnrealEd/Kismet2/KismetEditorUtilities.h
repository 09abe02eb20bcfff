#pragma once

#include "CoreMinimal.h"
#include "Engine/Blueprint.h"
#include "Templates/SubclassOf.h"

class FCompilerResultsLog;
class UBlueprintGeneratedClass;

enum class EBlueprintCompileOptions
{
	None = 0x0,
	IsRegeneratingOnLoad = 0x1,
	SkipGarbageCollection = 0x2,
	SaveIntermediateProducts = 0x4,
	SkeletonUpToDate = 0x8,
	BatchCompile = 0x10,
	SkipSave = 0x20,
	SkipReinstancing = 0x40,
	RegenerateSkeletonOnly = 0x80,
	SkipDefaultObjectValidation = 0x100,
	SkipFiBSearchMetaUpdate = 0x200,
	UseDeltaSerializationDuringReinstancing = 0x400,
	SkipNewVariableDefaultsDetection = 0x800,
	IncludeCDOInReferenceReplacement = 0x1000,
};
ENUM_CLASS_FLAGS(EBlueprintCompileOptions)

class FKismetEditorUtilities
{
public:
	static UBlueprint* CreateBlueprint(UClass* ParentClass, UObject* Outer, const FName NewBPName, enum EBlueprintType BlueprintType, FName CallingContext = NAME_None);
	static UBlueprint* CreateBlueprint(UClass* ParentClass, UObject* Outer, const FName NewBPName, enum EBlueprintType BlueprintType, TSubclassOf<UBlueprint> BlueprintClassType,
		TSubclassOf<UBlueprintGeneratedClass> BlueprintGeneratedClassType, FName CallingContext = NAME_None);
	static void CompileBlueprint(UBlueprint* BlueprintObj, EBlueprintCompileOptions CompileFlags = EBlueprintCompileOptions::None, FCompilerResultsLog* pResults = nullptr);
	static bool CanCreateBlueprintOfClass(const UClass* Class);
};
