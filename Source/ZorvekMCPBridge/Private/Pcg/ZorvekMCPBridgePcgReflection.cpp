#include "Pcg/ZorvekMCPBridgePcgReflection.h"

#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"

const TCHAR* const ZorvekMCPBridgePcgReflection::ComponentClassPath = TEXT("/Script/PCG.PCGComponent");
const TCHAR* const ZorvekMCPBridgePcgReflection::ManagedActorsClassPath = TEXT("/Script/PCG.PCGManagedActors");
const TCHAR* const ZorvekMCPBridgePcgReflection::BasePointDataClassPath = TEXT("/Script/PCG.PCGBasePointData");
const TCHAR* const ZorvekMCPBridgePcgReflection::PointDataClassPath = TEXT("/Script/PCG.PCGPointData");

namespace
{
	bool IsPcgFlagParameter(const FZorvekMCPBridgeFieldInfo& Parameter)
	{
		return Parameter.FieldClass == EZorvekMCPBridgeFieldClass::Bool && (Parameter.Flags & ZorvekMCPBridgeParameterFlags::ReturnParm) == 0;
	}
}

bool ZorvekMCPBridgePcgReflection::CallWithFlag(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, const TCHAR* ObjectWord, const FString& FunctionName, bool bFlag, FString& OutError)
{
	if (!Object.IsValid())
	{
		OutError = FString::Printf(TEXT("%s was invalid."), ObjectWord);
		return false;
	}
	IZorvekMCPBridgeFunctions& Functions = Port.GetFunctions();
	const FString ClassPath = Port.GetObjects().GetClassInfo(Object).Path;
	FZorvekMCPBridgeFunctionInfo Function;
	TUniquePtr<IZorvekMCPBridgeParameterBlock> Block;
	if (Functions.FindFunction(ClassPath, FunctionName, TArray<FString>(), Function))
	{
		Block = Functions.CreateParameterBlock(ClassPath, Function.Name);
	}
	if (!Block.IsValid())
	{
		OutError = FString::Printf(TEXT("%s did not expose %s."), ObjectWord, *FunctionName);
		return false;
	}
	for (int32 Index = 0; Index < Function.Parameters.Num(); ++Index)
	{
		if (IsPcgFlagParameter(Function.Parameters[Index]))
		{
			Block->ImportJsonValue(Index, MakeShared<FJsonValueBoolean>(bFlag));
			break;
		}
	}
	Functions.CallFunction(Object, *Block);
	return true;
}

bool ZorvekMCPBridgePcgReflection::CallIntegerGetter(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, const FString& FunctionName, int64& OutValue)
{
	if (!Object.IsValid())
	{
		return false;
	}
	IZorvekMCPBridgeFunctions& Functions = Port.GetFunctions();
	const FString ClassPath = Port.GetObjects().GetClassInfo(Object).Path;
	FZorvekMCPBridgeFunctionInfo Function;
	if (!Functions.FindFunction(ClassPath, FunctionName, TArray<FString>(), Function))
	{
		return false;
	}
	int32 ReturnIndex = INDEX_NONE;
	for (int32 Index = 0; Index < Function.Parameters.Num(); ++Index)
	{
		if (Function.Parameters[Index].Flags & ZorvekMCPBridgeParameterFlags::ReturnParm)
		{
			ReturnIndex = Index;
		}
	}
	TUniquePtr<IZorvekMCPBridgeParameterBlock> Block = ReturnIndex == INDEX_NONE ? nullptr : Functions.CreateParameterBlock(ClassPath, Function.Name);
	if (!Block.IsValid())
	{
		return false;
	}
	Functions.CallFunction(Object, *Block);
	const TSharedPtr<FJsonValue> Result = Block->ExportJsonValue(ReturnIndex);
	double Number = 0.0;
	if (!Result.IsValid() || Result->Type != EJson::Number || !Result->TryGetNumber(Number))
	{
		return false;
	}
	OutValue = (int64)Number;
	return true;
}

FZorvekMCPBridgeObjectHandle ZorvekMCPBridgePcgReflection::FindPcgComponent(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgeActorSnapshot& Actor)
{
	IZorvekMCPBridgeObjects& Objects = Port.GetObjects();
	FZorvekMCPBridgeTypeInfo ComponentClass;
	if (!Objects.LoadClass(ComponentClassPath, ComponentClass))
	{
		return FZorvekMCPBridgeObjectHandle();
	}
	for (const FZorvekMCPBridgeActorComponentSnapshot& Component : Actor.Components)
	{
		if (Objects.IsA(Component.Component, ComponentClass.Path))
		{
			return Component.Component;
		}
	}
	return FZorvekMCPBridgeObjectHandle();
}

bool ZorvekMCPBridgePcgReflection::ReadBoolProperty(const IZorvekMCPBridgeReflection& Reflection, FZorvekMCPBridgeObjectHandle Object, const FString& PropertyName, bool& OutValue)
{
	const FZorvekMCPBridgePropertyCursor Property = Reflection.FindProperty(Object, PropertyName);
	FString Text;
	if (!Property.IsValid() || !Property.ExportText(Text))
	{
		return false;
	}
	if (Text.Equals(TEXT("True"), ESearchCase::IgnoreCase) || Text == TEXT("1"))
	{
		OutValue = true;
		return true;
	}
	if (Text.Equals(TEXT("False"), ESearchCase::IgnoreCase) || Text == TEXT("0"))
	{
		OutValue = false;
		return true;
	}
	return false;
}
