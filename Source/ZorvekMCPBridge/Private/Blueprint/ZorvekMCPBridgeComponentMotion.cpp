#include "Blueprint/ZorvekMCPBridgeComponentMotion.h"

#include "Blueprint/ZorvekMCPBridgeBlueprintLoading.h"
#include "Blueprint/ZorvekMCPBridgeEventChaining.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "EditorPort/ZorvekMCPBridgeReflectionPort.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"

namespace
{
	using namespace ZorvekMCPBridgeComponentMotion;
	using namespace ZorvekMCPBridgeEventChaining;

	const TCHAR* const MotionSceneComponentClassPath = TEXT("/Script/Engine.SceneComponent");
	const TCHAR* const MotionMathLibraryPath = TEXT("/Script/Engine.KismetMathLibrary");
	const TCHAR* const MotionSystemLibraryPath = TEXT("/Script/Engine.KismetSystemLibrary");
	const TCHAR* const MotionVectorStructPath = TEXT("/Script/CoreUObject.Vector");
	// One cycle and one degree in radians, as the Sin and Cos nodes take their angle.
	const TCHAR* const MotionRadiansPerCycle = TEXT("6.283185");
	const TCHAR* const MotionRadiansPerDegree = TEXT("0.017453");

	const TCHAR* GetMotionTypeWord(EMotionType Type)
	{
		switch (Type)
		{
		case EMotionType::Bob:
			return TEXT("Bob");
		case EMotionType::Orbit:
			return TEXT("Orbit");
		default:
			return TEXT("Rotate");
		}
	}

	const TCHAR* GetMotionAxisWord(EMotionAxis Axis)
	{
		return Axis == EMotionAxis::X ? TEXT("X") : (Axis == EMotionAxis::Y ? TEXT("Y") : TEXT("Z"));
	}

	// Make Rotator's pin for a turn about the axis: X is roll, Y pitch, Z yaw.
	const TCHAR* GetMotionRotatorPin(EMotionAxis Axis)
	{
		return Axis == EMotionAxis::X ? TEXT("Roll") : (Axis == EMotionAxis::Y ? TEXT("Pitch") : TEXT("Yaw"));
	}

	// The plane an orbit turns in, normal to the axis and right-handed: the cosine and sine
	// components of Make Vector (Z: X then Y; X: Y then Z; Y: Z then X).
	void GetMotionOrbitPins(EMotionAxis Axis, const TCHAR*& OutCosinePin, const TCHAR*& OutSinePin)
	{
		OutCosinePin = Axis == EMotionAxis::X ? TEXT("Y") : (Axis == EMotionAxis::Y ? TEXT("Z") : TEXT("X"));
		OutSinePin = Axis == EMotionAxis::X ? TEXT("Z") : (Axis == EMotionAxis::Y ? TEXT("X") : TEXT("Y"));
	}

	FString FormatMotionNumber(double Value)
	{
		return FString::Printf(TEXT("%f"), Value);
	}

	// The component template's RelativeLocation as a vector variable's default ("X,Y,Z", the form
	// the Blueprint editor keeps for vector defaults); zero for an inherited component, which has
	// no template in this Blueprint.
	FString ReadMotionBaseLocation(IZorvekMCPBridgeEditorPort& Port, const FBlueprintComponent& Component)
	{
		double Values[3] = {0.0, 0.0, 0.0};
		FString Text;
		if (Component.Template.IsValid() && Port.GetReflection().FindProperty(Component.Template, TEXT("RelativeLocation")).ExportText(Text))
		{
			// Export text: (X=0.000000,Y=0.000000,Z=120.000000).
			const TCHAR* const Keys[3] = {TEXT("X="), TEXT("Y="), TEXT("Z=")};
			for (int32 Index = 0; Index < 3; ++Index)
			{
				const int32 Start = Text.Find(Keys[Index], ESearchCase::CaseSensitive);
				if (Start != INDEX_NONE)
				{
					// FCString::Atod: not in the reference notes; check against the engine.
					Values[Index] = FCString::Atod(*Text.Mid(Start + 2));
				}
			}
		}
		// Not in the reference notes; check against the engine: the "X,Y,Z" text of a vector
		// variable's default (FBlueprintEditorUtils::PropertyValueFromString).
		return FString::Printf(TEXT("%f,%f,%f"), Values[0], Values[1], Values[2]);
	}

	void AddMotionNode(FGraphPlan& Plan, const TCHAR* Key, const FZorvekMCPBridgeNodeSpawnRequest& Request, int32 Column, int32 Row,
		TArray<FZorvekMCPBridgePinDefault> PinDefaults = {})
	{
		FPlannedNode Node;
		Node.Key = Key;
		Node.Request = Request;
		Node.Column = Column;
		Node.Row = Row;
		Node.PinDefaults = MoveTemp(PinDefaults);
		Plan.Nodes.Add(MoveTemp(Node));
	}

	void AddMotionLink(FGraphPlan& Plan, const FString& SourceKey, const FString& SourcePin, const FString& TargetKey, const FString& TargetPin)
	{
		Plan.Links.Add({SourceKey, SourcePin, TargetKey, TargetPin});
	}

	void AddMotionVariable(FGraphPlan& Plan, const FString& Name, const FZorvekMCPBridgePinType& Type, const FString& DefaultValue, const FString& Purpose)
	{
		Plan.Variables.Add({FName(*Name), Type, DefaultValue, Purpose});
	}

	// Event Tick runs one setter of the component; everything else is pure.
	FGraphPlan MakeMotionPlan(IZorvekMCPBridgeEditorPort& Port, const FComponentMotionParams& Params, const FBlueprintComponent& Component, double Speed,
		double Amplitude, double Radius)
	{
		FGraphPlan Plan;
		const FString& Name = Component.Name;
		Plan.Events.Add({TEXT("ReceiveTick"), TEXT("Tick"), TEXT("Move"), 0});
		AddMotionNode(Plan, TEXT("Component"), MakeVariableRequest(false, Name, Component.OwnerClassPath), 4, 2);
		const auto Multiply = [](){ return MakeCallRequest(MotionMathLibraryPath, TEXT("Multiply_DoubleDouble")); };

		if (Params.MotionType == EMotionType::Rotate)
		{
			const FString SpeedName = Name + TEXT("RotationSpeed");
			AddMotionVariable(Plan, SpeedName, MakeRealPinType(), FormatMotionNumber(Speed), TEXT("rotation speed in degrees per second"));
			AddMotionNode(Plan, TEXT("Speed"), MakeVariableRequest(false, SpeedName, FString()), 0, 1);
			AddMotionNode(Plan, TEXT("Step"), Multiply(), 1, 1);
			AddMotionNode(Plan, TEXT("Rotator"), MakeCallRequest(MotionMathLibraryPath, TEXT("MakeRotator")), 2, 1);
			AddMotionNode(Plan, TEXT("Move"), MakeCallRequest(MotionSceneComponentClassPath, TEXT("K2_AddLocalRotation")), 5, 0);
			AddMotionLink(Plan, TEXT("Speed"), SpeedName, TEXT("Step"), TEXT("A"));
			AddMotionLink(Plan, TEXT("Tick"), TEXT("DeltaSeconds"), TEXT("Step"), TEXT("B"));
			AddMotionLink(Plan, TEXT("Step"), TEXT("ReturnValue"), TEXT("Rotator"), GetMotionRotatorPin(Params.Axis));
			AddMotionLink(Plan, TEXT("Rotator"), TEXT("ReturnValue"), TEXT("Move"), TEXT("DeltaRotation"));
			AddMotionLink(Plan, TEXT("Component"), Name, TEXT("Move"), TEXT("self"));
			return Plan;
		}

		// Bob and Orbit: base location + an offset that follows the game time.
		const bool bBob = Params.MotionType == EMotionType::Bob;
		const FString SpeedName = Name + (bBob ? TEXT("BobSpeed") : TEXT("OrbitSpeed"));
		const FString SizeName = Name + (bBob ? TEXT("BobAmplitude") : TEXT("OrbitRadius"));
		const FString BaseName = Name + TEXT("BaseLocation");
		AddMotionVariable(Plan, SpeedName, MakeRealPinType(), FormatMotionNumber(Speed), bBob ? TEXT("bob speed in cycles per second") : TEXT("orbit speed in degrees per second"));
		AddMotionVariable(Plan, SizeName, MakeRealPinType(), FormatMotionNumber(bBob ? Amplitude : Radius), bBob ? TEXT("bob amplitude in centimetres") : TEXT("orbit radius in centimetres"));
		AddMotionVariable(Plan, BaseName, MakeStructPinType(MotionVectorStructPath, TEXT("Vector")), ReadMotionBaseLocation(Port, Component),
			TEXT("relative location the motion is centred on"));
		AddMotionNode(Plan, TEXT("Time"), MakeCallRequest(MotionSystemLibraryPath, TEXT("GetGameTimeInSeconds")), 0, 1);
		AddMotionNode(Plan, TEXT("Speed"), MakeVariableRequest(false, SpeedName, FString()), 0, 2);
		AddMotionNode(Plan, TEXT("Turns"), Multiply(), 1, 1);
		AddMotionNode(Plan, TEXT("Angle"), Multiply(), 2, 1, {{TEXT("B"), bBob ? MotionRadiansPerCycle : MotionRadiansPerDegree}});
		AddMotionNode(Plan, TEXT("Size"), MakeVariableRequest(false, SizeName, FString()), 2, 3);
		AddMotionNode(Plan, TEXT("Offset"), MakeCallRequest(MotionMathLibraryPath, TEXT("MakeVector")), 4, 1);
		AddMotionNode(Plan, TEXT("Base"), MakeVariableRequest(false, BaseName, FString()), 4, 3);
		AddMotionNode(Plan, TEXT("Location"), MakeCallRequest(MotionMathLibraryPath, TEXT("Add_VectorVector")), 5, 2);
		AddMotionNode(Plan, TEXT("Move"), MakeCallRequest(MotionSceneComponentClassPath, TEXT("K2_SetRelativeLocation")), 6, 0);
		AddMotionLink(Plan, TEXT("Time"), TEXT("ReturnValue"), TEXT("Turns"), TEXT("A"));
		AddMotionLink(Plan, TEXT("Speed"), SpeedName, TEXT("Turns"), TEXT("B"));
		AddMotionLink(Plan, TEXT("Turns"), TEXT("ReturnValue"), TEXT("Angle"), TEXT("A"));
		if (bBob)
		{
			AddMotionNode(Plan, TEXT("Sine"), MakeCallRequest(MotionMathLibraryPath, TEXT("Sin")), 3, 1);
			AddMotionNode(Plan, TEXT("Height"), Multiply(), 3, 2);
			AddMotionLink(Plan, TEXT("Angle"), TEXT("ReturnValue"), TEXT("Sine"), TEXT("A"));
			AddMotionLink(Plan, TEXT("Sine"), TEXT("ReturnValue"), TEXT("Height"), TEXT("A"));
			AddMotionLink(Plan, TEXT("Size"), SizeName, TEXT("Height"), TEXT("B"));
			AddMotionLink(Plan, TEXT("Height"), TEXT("ReturnValue"), TEXT("Offset"), GetMotionAxisWord(Params.Axis));
		}
		else
		{
			const TCHAR* CosinePin = nullptr;
			const TCHAR* SinePin = nullptr;
			GetMotionOrbitPins(Params.Axis, CosinePin, SinePin);
			AddMotionNode(Plan, TEXT("Cosine"), MakeCallRequest(MotionMathLibraryPath, TEXT("Cos")), 3, 0);
			AddMotionNode(Plan, TEXT("Sine"), MakeCallRequest(MotionMathLibraryPath, TEXT("Sin")), 3, 1);
			AddMotionNode(Plan, TEXT("CosineOffset"), Multiply(), 3, 2);
			AddMotionNode(Plan, TEXT("SineOffset"), Multiply(), 3, 3);
			AddMotionLink(Plan, TEXT("Angle"), TEXT("ReturnValue"), TEXT("Cosine"), TEXT("A"));
			AddMotionLink(Plan, TEXT("Angle"), TEXT("ReturnValue"), TEXT("Sine"), TEXT("A"));
			AddMotionLink(Plan, TEXT("Cosine"), TEXT("ReturnValue"), TEXT("CosineOffset"), TEXT("A"));
			AddMotionLink(Plan, TEXT("Size"), SizeName, TEXT("CosineOffset"), TEXT("B"));
			AddMotionLink(Plan, TEXT("Sine"), TEXT("ReturnValue"), TEXT("SineOffset"), TEXT("A"));
			AddMotionLink(Plan, TEXT("Size"), SizeName, TEXT("SineOffset"), TEXT("B"));
			AddMotionLink(Plan, TEXT("CosineOffset"), TEXT("ReturnValue"), TEXT("Offset"), CosinePin);
			AddMotionLink(Plan, TEXT("SineOffset"), TEXT("ReturnValue"), TEXT("Offset"), SinePin);
		}
		AddMotionLink(Plan, TEXT("Base"), BaseName, TEXT("Location"), TEXT("A"));
		AddMotionLink(Plan, TEXT("Offset"), TEXT("ReturnValue"), TEXT("Location"), TEXT("B"));
		AddMotionLink(Plan, TEXT("Location"), TEXT("ReturnValue"), TEXT("Move"), TEXT("NewLocation"));
		AddMotionLink(Plan, TEXT("Component"), Name, TEXT("Move"), TEXT("self"));
		return Plan;
	}

	// Speeds may be negative (the other way round); sizes may not.
	bool CheckMotionSize(const ZorvekMCPBridgeWorldTransformArguments::FNumberOverride& Number, const TCHAR* Key, FString& OutError)
	{
		if (Number.bPresent && Number.Value < 0.0)
		{
			OutError = FString::Printf(TEXT("%s must not be negative."), Key);
			return false;
		}
		return true;
	}
}

bool ZorvekMCPBridgeComponentMotion::ParseMotionType(const FString& Word, EMotionType& OutType)
{
	const EMotionType Types[] = {EMotionType::Rotate, EMotionType::Bob, EMotionType::Orbit};
	for (const EMotionType Type : Types)
	{
		if (Word.Equals(GetMotionTypeWord(Type), ESearchCase::IgnoreCase))
		{
			OutType = Type;
			return true;
		}
	}
	return false;
}

bool ZorvekMCPBridgeComponentMotion::ParseMotionAxis(const FString& Word, EMotionAxis& OutAxis)
{
	const EMotionAxis Axes[] = {EMotionAxis::X, EMotionAxis::Y, EMotionAxis::Z};
	for (const EMotionAxis Axis : Axes)
	{
		if (Word.Equals(GetMotionAxisWord(Axis), ESearchCase::IgnoreCase))
		{
			OutAxis = Axis;
			return true;
		}
	}
	return false;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeComponentMotion::AddComponentMotion(IZorvekMCPBridgeEditorPort& Port, const FComponentMotionParams& Params)
{
	const auto Fail = [](const FString& Message) { return ZorvekMCPBridgeTools::MakeTextToolResult(Message, true); };
	if (!Params.ArgumentError.IsEmpty())
	{
		return Fail(Params.ArgumentError);
	}
	FString Error;
	if (!CheckMotionSize(Params.Amplitude, TEXT("Amplitude"), Error) || !CheckMotionSize(Params.Radius, TEXT("Radius"), Error))
	{
		return Fail(Error);
	}
	ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint Loaded;
	if (!ZorvekMCPBridgeBlueprintLoading::LoadBlueprint(Port, Params.BlueprintNameOrPath, Loaded, Error))
	{
		return Fail(Error);
	}
	FBlueprintComponent Component;
	if (!FindActorComponent(Port, Loaded, Params.ComponentName, MotionSceneComponentClassPath, TEXT("scene component (only scene components have a transform to move)"),
		Component, Error))
	{
		return Fail(Error);
	}
	const bool bBob = Params.MotionType == EMotionType::Bob;
	const double DefaultSpeed = Params.MotionType == EMotionType::Rotate ? DefaultRotateSpeed : (bBob ? DefaultBobSpeed : DefaultOrbitSpeed);
	const double Speed = Params.Speed.bPresent ? Params.Speed.Value : DefaultSpeed;
	const double Amplitude = Params.Amplitude.bPresent ? Params.Amplitude.Value : DefaultBobAmplitude;
	const double Radius = Params.Radius.bPresent ? Params.Radius.Value : DefaultOrbitRadius;
	const FString GraphName = Params.GraphName.IsEmpty() ? FString(ZorvekMCPBridgeBlueprintLoading::DefaultGraphName) : Params.GraphName;

	const FGraphPlan Plan = MakeMotionPlan(Port, Params, Component, Speed, Amplitude, Radius);
	FPreparedPlan Prepared;
	if (!PreparePlan(Port, Loaded, GraphName, Plan, Prepared, Error))
	{
		return Fail(Error);
	}
	const FAppliedPlan Applied = ApplyPlan(Port, Loaded, Plan, Prepared, Params.bCompile);

	TSharedPtr<FJsonObject> Header = MakeShared<FJsonObject>();
	Header->SetStringField(TEXT("asset_path"), Loaded.AssetPath);
	Header->SetStringField(TEXT("graph_name"), Prepared.GraphName);
	Header->SetStringField(TEXT("component_name"), Component.Name);
	Header->SetStringField(TEXT("component_class_path"), Component.ClassPath);
	Header->SetStringField(TEXT("motion_type"), GetMotionTypeWord(Params.MotionType));
	Header->SetStringField(TEXT("axis"), GetMotionAxisWord(Params.Axis));
	Header->SetNumberField(TEXT("speed"), Speed);
	if (bBob)
	{
		Header->SetNumberField(TEXT("amplitude"), Amplitude);
	}
	else if (Params.MotionType == EMotionType::Orbit)
	{
		Header->SetNumberField(TEXT("radius"), Radius);
	}
	return MakeToolResult(Header, Applied, Loaded.AssetPath, Prepared.GraphName);
}
