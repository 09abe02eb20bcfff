// blueprint_add_dynamic_material_parameter_update: at BeginPlay an Actor Blueprint makes a dynamic
// material instance for one material slot of a primitive component (Create Dynamic Material
// Instance), keeps it in a MaterialInstanceDynamic variable named after the component, and sets a
// scalar or vector parameter on it - once, from a variable (Variable), or on every Tick as a
// scalar pulse between Min and Max (Time).
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "World/ZorvekMCPBridgeWorldTransformArguments.h"

class IZorvekMCPBridgeEditorPort;

namespace ZorvekMCPBridgeDynamicMaterialUpdate
{
	enum class EParameterType : uint8
	{
		Scalar,
		Vector
	};

	enum class EValueSource : uint8
	{
		Variable,
		Time
	};

	// The defaults of the numbers the client leaves out.
	constexpr double DefaultPulseSpeed = 0.5;
	constexpr double DefaultPulseMin = 0.0;
	constexpr double DefaultPulseMax = 1.0;

	// "Scalar", "Vector" / "Variable", "Time" without regard to case; false for other words.
	bool ParseParameterType(const FString& Word, EParameterType& OutType);
	bool ParseValueSource(const FString& Word, EValueSource& OutSource);

	struct FDynamicMaterialParams
	{
		FString BlueprintNameOrPath;
		FString ComponentName;
		int32 ElementIndex = 0;
		// Empty: the slot's current material, which Create Dynamic Material Instance takes when its
		// Source Material is left empty.
		FString SourceMaterialPath;
		FString ParameterName;
		EParameterType ParameterType = EParameterType::Scalar;
		EValueSource ValueSource = EValueSource::Variable;
		// Variable mode: the variable that feeds the value; "<Component><Parameter>" when empty.
		FString VariableName;
		// Variable mode: the default of a variable the call creates, as sent (a number for a
		// scalar, "(R=..,G=..,B=..,A=..)" for a vector); empty for the type's default.
		FString DefaultValue;
		// Time mode: cycles per second and the range the value pulses in.
		ZorvekMCPBridgeWorldTransformArguments::FNumberOverride Speed;
		ZorvekMCPBridgeWorldTransformArguments::FNumberOverride Min;
		ZorvekMCPBridgeWorldTransformArguments::FNumberOverride Max;
		FString GraphName;
		bool bCompile = true;
		// The first argument that could not be read; the call is refused with it before anything
		// is loaded.
		FString ArgumentError;
	};

	TSharedPtr<FJsonObject> AddDynamicMaterialParameterUpdate(IZorvekMCPBridgeEditorPort& Port, const FDynamicMaterialParams& Params);
}
