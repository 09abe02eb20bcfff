#include "Tools/ZorvekMCPBridgeBlueprintCompositeTools.h"

#include "Blueprint/ZorvekMCPBridgeComponentMotion.h"
#include "Blueprint/ZorvekMCPBridgeDynamicMaterialUpdate.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"
#include "World/ZorvekMCPBridgeWorldTransformArguments.h"

namespace
{
	using ZorvekMCPBridgeWorldTransformArguments::FNumberOverride;

	FString ReadCompositeToolString(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key)
	{
		return ZorvekMCPBridgeToolArguments::ReadString(Arguments, Key, FString()).TrimStartAndEnd();
	}

	// Keeps the first refusal of an argument; later ones are not looked at.
	void ReadCompositeToolNumber(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, FNumberOverride& OutNumber, FString& InOutError)
	{
		const FString Refusal = ZorvekMCPBridgeWorldTransformArguments::ReadNumber(Arguments, Key, OutNumber);
		if (InOutError.IsEmpty())
		{
			InOutError = Refusal;
		}
	}

	// A word argument: absent or empty keeps the default; a word the parser does not know is
	// refused with the words it takes.
	template <typename TEnum>
	void ReadCompositeToolWord(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, bool (*Parse)(const FString&, TEnum&), const TCHAR* Words, TEnum& OutValue,
		FString& InOutError)
	{
		const FString Word = ReadCompositeToolString(Arguments, Key);
		if (!Word.IsEmpty() && !Parse(Word, OutValue) && InOutError.IsEmpty())
		{
			InOutError = FString::Printf(TEXT("%s '%s' is not known; use %s."), Key, *Word, Words);
		}
	}

	ZorvekMCPBridgeComponentMotion::FComponentMotionParams ReadComponentMotionParams(const TSharedPtr<FJsonObject>& Arguments)
	{
		using namespace ZorvekMCPBridgeComponentMotion;
		FComponentMotionParams Params;
		Params.BlueprintNameOrPath = ReadCompositeToolString(Arguments, TEXT("BlueprintNameOrPath"));
		Params.ComponentName = ReadCompositeToolString(Arguments, TEXT("ComponentName"));
		ReadCompositeToolWord(Arguments, TEXT("MotionType"), &ParseMotionType, TEXT("Rotate, Bob or Orbit"), Params.MotionType, Params.ArgumentError);
		ReadCompositeToolWord(Arguments, TEXT("Axis"), &ParseMotionAxis, TEXT("X, Y or Z"), Params.Axis, Params.ArgumentError);
		ReadCompositeToolNumber(Arguments, TEXT("Speed"), Params.Speed, Params.ArgumentError);
		ReadCompositeToolNumber(Arguments, TEXT("Amplitude"), Params.Amplitude, Params.ArgumentError);
		ReadCompositeToolNumber(Arguments, TEXT("Radius"), Params.Radius, Params.ArgumentError);
		Params.GraphName = ReadCompositeToolString(Arguments, TEXT("GraphName"));
		Params.bCompile = ZorvekMCPBridgeToolArguments::ReadBool(Arguments, TEXT("Compile"), true);
		return Params;
	}

	ZorvekMCPBridgeDynamicMaterialUpdate::FDynamicMaterialParams ReadDynamicMaterialParams(const TSharedPtr<FJsonObject>& Arguments)
	{
		using namespace ZorvekMCPBridgeDynamicMaterialUpdate;
		FDynamicMaterialParams Params;
		Params.BlueprintNameOrPath = ReadCompositeToolString(Arguments, TEXT("BlueprintNameOrPath"));
		Params.ComponentName = ReadCompositeToolString(Arguments, TEXT("ComponentName"));
		// A value that reads differently under two defaults was not a number at all.
		const int32 ElementIndex = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, TEXT("ElementIndex"), 0);
		const bool bHasElementIndex = Arguments.IsValid() && Arguments->TryGetField(TEXT("ElementIndex")).IsValid();
		if (bHasElementIndex && ElementIndex != ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, TEXT("ElementIndex"), -1))
		{
			Params.ArgumentError = TEXT("ElementIndex must be a whole number of 0 or more.");
		}
		Params.ElementIndex = ElementIndex;
		Params.SourceMaterialPath = ReadCompositeToolString(Arguments, TEXT("SourceMaterialPath"));
		Params.ParameterName = ReadCompositeToolString(Arguments, TEXT("ParameterName"));
		ReadCompositeToolWord(Arguments, TEXT("ParameterType"), &ParseParameterType, TEXT("Scalar or Vector"), Params.ParameterType, Params.ArgumentError);
		ReadCompositeToolWord(Arguments, TEXT("ValueSource"), &ParseValueSource, TEXT("Variable or Time"), Params.ValueSource, Params.ArgumentError);
		Params.VariableName = ReadCompositeToolString(Arguments, TEXT("VariableName"));
		Params.DefaultValue = ReadCompositeToolString(Arguments, TEXT("DefaultValue"));
		ReadCompositeToolNumber(Arguments, TEXT("Speed"), Params.Speed, Params.ArgumentError);
		ReadCompositeToolNumber(Arguments, TEXT("Min"), Params.Min, Params.ArgumentError);
		ReadCompositeToolNumber(Arguments, TEXT("Max"), Params.Max, Params.ArgumentError);
		Params.GraphName = ReadCompositeToolString(Arguments, TEXT("GraphName"));
		Params.bCompile = ZorvekMCPBridgeToolArguments::ReadBool(Arguments, TEXT("Compile"), true);
		return Params;
	}
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintCompositeTools::HandleAddComponentMotion(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("blueprint_add_component_motion"));
	}
	return ZorvekMCPBridgeComponentMotion::AddComponentMotion(*Context.EditorPort, ReadComponentMotionParams(Arguments));
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeBlueprintCompositeTools::HandleAddDynamicMaterialParameterUpdate(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(TEXT("blueprint_add_dynamic_material_parameter_update"));
	}
	return ZorvekMCPBridgeDynamicMaterialUpdate::AddDynamicMaterialParameterUpdate(*Context.EditorPort, ReadDynamicMaterialParams(Arguments));
}
