#include "Blueprint/ZorvekMCPBridgeDynamicMaterialUpdate.h"

#include "Assets/ZorvekMCPBridgeAssetResolver.h"
#include "Blueprint/ZorvekMCPBridgeBlueprintLoading.h"
#include "Blueprint/ZorvekMCPBridgeEventChaining.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"

namespace
{
	using namespace ZorvekMCPBridgeDynamicMaterialUpdate;
	using namespace ZorvekMCPBridgeEventChaining;

	const TCHAR* const MaterialUpdatePrimitiveClassPath = TEXT("/Script/Engine.PrimitiveComponent");
	const TCHAR* const MaterialUpdateInterfaceClassPath = TEXT("/Script/Engine.MaterialInterface");
	const TCHAR* const MaterialUpdateDynamicClassPath = TEXT("/Script/Engine.MaterialInstanceDynamic");
	const TCHAR* const MaterialUpdateMathLibraryPath = TEXT("/Script/Engine.KismetMathLibrary");
	const TCHAR* const MaterialUpdateSystemLibraryPath = TEXT("/Script/Engine.KismetSystemLibrary");
	const TCHAR* const MaterialUpdateLinearColorPath = TEXT("/Script/CoreUObject.LinearColor");
	const TCHAR* const MaterialUpdateRadiansPerCycle = TEXT("6.283185");

	const TCHAR* GetMaterialUpdateTypeWord(EParameterType Type)
	{
		return Type == EParameterType::Vector ? TEXT("Vector") : TEXT("Scalar");
	}

	const TCHAR* GetMaterialUpdateSourceWord(EValueSource Source)
	{
		return Source == EValueSource::Time ? TEXT("Time") : TEXT("Variable");
	}

	// A parameter name as part of a variable name: letters, digits and underscores only.
	FString MakeMaterialUpdateNamePart(const FString& ParameterName)
	{
		FString Part;
		for (const TCHAR Character : ParameterName)
		{
			if (FChar::IsAlnum(Character) || Character == TEXT('_'))
			{
				Part.AppendChar(Character);
			}
		}
		return Part.IsEmpty() ? FString(TEXT("Parameter")) : Part;
	}

	// A colour text "(R=1,G=0.5,B=0,A=1)" (A optional, 1 when left out) in the form the editor keeps
	// a Linear Color default in; false when a channel is missing or not a number.
	bool MakeMaterialUpdateColorText(const FString& Text, FString& OutText)
	{
		const FString Trimmed = Text.TrimStartAndEnd();
		if (!Trimmed.StartsWith(TEXT("(")) || !Trimmed.EndsWith(TEXT(")")))
		{
			return false;
		}
		TArray<FString> Parts;
		Trimmed.Mid(1, Trimmed.Len() - 2).ParseIntoArray(Parts, TEXT(","), true);
		double Channels[4] = {0.0, 0.0, 0.0, 1.0};
		bool bSeen[4] = {false, false, false, false};
		const TCHAR* const Names[4] = {TEXT("R"), TEXT("G"), TEXT("B"), TEXT("A")};
		for (const FString& Part : Parts)
		{
			FString Key;
			FString Value;
			if (!Part.Split(TEXT("="), &Key, &Value))
			{
				return false;
			}
			Key.TrimStartAndEndInline();
			Value.TrimStartAndEndInline();
			int32 Channel = INDEX_NONE;
			for (int32 Index = 0; Index < 4; ++Index)
			{
				Channel = Key.Equals(Names[Index], ESearchCase::IgnoreCase) ? Index : Channel;
			}
			if (Channel == INDEX_NONE || bSeen[Channel] || !Value.IsNumeric())
			{
				return false;
			}
			// FCString::Atod: not in the reference notes; check against the engine.
			Channels[Channel] = FCString::Atod(*Value);
			bSeen[Channel] = true;
		}
		if (!bSeen[0] || !bSeen[1] || !bSeen[2])
		{
			return false;
		}
		OutText = FString::Printf(TEXT("(R=%f,G=%f,B=%f,A=%f)"), Channels[0], Channels[1], Channels[2], Channels[3]);
		return true;
	}

	// The material as an object path: a path loads as it is (a package path completed to its
	// asset), anything else is resolved by name first. Empty when it is not a material interface.
	FString LoadMaterialUpdateSource(IZorvekMCPBridgeEditorPort& Port, const FString& Query)
	{
		FString PackageOrObjectPath = Query;
		if (!Query.StartsWith(TEXT("/")))
		{
			FString Best;
			FString Error;
			ZorvekMCPBridgeAssets::ResolveAssetQuery(Port.GetAssetRegistry(), Query, FString(), ZorvekMCPBridgeAssets::DefaultResolveLimit, Best, Error);
			if (Best.IsEmpty())
			{
				return FString();
			}
			PackageOrObjectPath = Best;
		}
		int32 DotIndex = INDEX_NONE;
		const FString ObjectPath = PackageOrObjectPath.FindChar(TEXT('.'), DotIndex) ? PackageOrObjectPath : ZorvekMCPBridgeAssets::MakeAssetObjectPath(PackageOrObjectPath);
		IZorvekMCPBridgeObjects& Objects = Port.GetObjects();
		const FZorvekMCPBridgeObjectHandle Material = Objects.LoadObject(ObjectPath);
		return Objects.IsA(Material, MaterialUpdateInterfaceClassPath) ? Objects.GetIdentity(Material).ObjectPath : FString();
	}

	void AddMaterialUpdateNode(FGraphPlan& Plan, const TCHAR* Key, const FZorvekMCPBridgeNodeSpawnRequest& Request, int32 Column, int32 Row,
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

	struct FMaterialUpdateNames
	{
		FString Instance;
		FString Value;
		FString Speed;
		FString Min;
		FString Max;
	};

	// BeginPlay: Create Dynamic Material Instance -> SET <Component>DynamicMaterial, then in
	// Variable mode Set ... Parameter Value from the variable; in Time mode Tick sets the pulse.
	FGraphPlan MakeMaterialUpdatePlan(const FDynamicMaterialParams& Params, const FBlueprintComponent& Component, const FString& SourceMaterial,
		const FMaterialUpdateNames& Names, const FString& ValueDefault, double Speed, double Min, double Max)
	{
		FGraphPlan Plan;
		const bool bVector = Params.ParameterType == EParameterType::Vector;
		const FString SetterName = bVector ? TEXT("SetVectorParameterValue") : TEXT("SetScalarParameterValue");
		const TArray<FZorvekMCPBridgePinDefault> ParameterDefault = {{TEXT("ParameterName"), Params.ParameterName}};
		Plan.Variables.Add({FName(*Names.Instance), MakeObjectPinType(MaterialUpdateDynamicClassPath, TEXT("MaterialInstanceDynamic")), FString(),
			TEXT("the dynamic material instance made at BeginPlay")});
		Plan.Events.Add({TEXT("ReceiveBeginPlay"), TEXT("BeginPlay"), TEXT("Create"), 0});

		TArray<FZorvekMCPBridgePinDefault> CreateDefaults = {{TEXT("ElementIndex"), FString::FromInt(Params.ElementIndex)}};
		if (!SourceMaterial.IsEmpty())
		{
			CreateDefaults.Add({TEXT("SourceMaterial"), SourceMaterial});
		}
		AddMaterialUpdateNode(Plan, TEXT("Component"), MakeVariableRequest(false, Component.Name, Component.OwnerClassPath), 0, 1);
		AddMaterialUpdateNode(Plan, TEXT("Create"), MakeCallRequest(MaterialUpdatePrimitiveClassPath, TEXT("CreateDynamicMaterialInstance")), 1, 0, CreateDefaults);
		AddMaterialUpdateNode(Plan, TEXT("Keep"), MakeVariableRequest(true, Names.Instance, FString()), 2, 0);
		Plan.Links.Add({TEXT("Component"), Component.Name, TEXT("Create"), TEXT("self")});
		Plan.Links.Add({TEXT("Create"), TEXT("ReturnValue"), TEXT("Keep"), Names.Instance});
		Plan.Links.Add({TEXT("Create"), TEXT("then"), TEXT("Keep"), TEXT("execute")});

		if (Params.ValueSource == EValueSource::Variable)
		{
			const FZorvekMCPBridgePinType ValueType = bVector ? MakeStructPinType(MaterialUpdateLinearColorPath, TEXT("LinearColor")) : MakeRealPinType();
			Plan.Variables.Add({FName(*Names.Value), ValueType, ValueDefault, FString::Printf(TEXT("the value of parameter '%s'"), *Params.ParameterName)});
			AddMaterialUpdateNode(Plan, TEXT("Value"), MakeVariableRequest(false, Names.Value, FString()), 2, 2);
			AddMaterialUpdateNode(Plan, TEXT("SetParameter"), MakeCallRequest(MaterialUpdateDynamicClassPath, SetterName), 3, 0, ParameterDefault);
			Plan.Links.Add({TEXT("Keep"), TEXT("then"), TEXT("SetParameter"), TEXT("execute")});
			Plan.Links.Add({TEXT("Keep"), TEXT("Output_Get"), TEXT("SetParameter"), TEXT("self")});
			Plan.Links.Add({TEXT("Value"), Names.Value, TEXT("SetParameter"), TEXT("Value")});
			return Plan;
		}

		// Time: Min + (Max - Min) * (sin(time * speed * 2pi) + 1) / 2, through Map Range Clamped.
		Plan.Variables.Add({FName(*Names.Speed), MakeRealPinType(), FString::Printf(TEXT("%f"), Speed), TEXT("pulse speed in cycles per second")});
		Plan.Variables.Add({FName(*Names.Min), MakeRealPinType(), FString::Printf(TEXT("%f"), Min), TEXT("lowest value of the pulse")});
		Plan.Variables.Add({FName(*Names.Max), MakeRealPinType(), FString::Printf(TEXT("%f"), Max), TEXT("highest value of the pulse")});
		Plan.Events.Add({TEXT("ReceiveTick"), TEXT("Tick"), TEXT("SetParameter"), 4});
		AddMaterialUpdateNode(Plan, TEXT("Instance"), MakeVariableRequest(false, Names.Instance, FString()), 4, 5);
		AddMaterialUpdateNode(Plan, TEXT("Time"), MakeCallRequest(MaterialUpdateSystemLibraryPath, TEXT("GetGameTimeInSeconds")), 0, 5);
		AddMaterialUpdateNode(Plan, TEXT("Speed"), MakeVariableRequest(false, Names.Speed, FString()), 0, 6);
		AddMaterialUpdateNode(Plan, TEXT("Turns"), MakeCallRequest(MaterialUpdateMathLibraryPath, TEXT("Multiply_DoubleDouble")), 1, 5);
		AddMaterialUpdateNode(Plan, TEXT("Angle"), MakeCallRequest(MaterialUpdateMathLibraryPath, TEXT("Multiply_DoubleDouble")), 2, 5,
			{{TEXT("B"), MaterialUpdateRadiansPerCycle}});
		AddMaterialUpdateNode(Plan, TEXT("Sine"), MakeCallRequest(MaterialUpdateMathLibraryPath, TEXT("Sin")), 3, 5);
		AddMaterialUpdateNode(Plan, TEXT("Min"), MakeVariableRequest(false, Names.Min, FString()), 3, 6);
		AddMaterialUpdateNode(Plan, TEXT("Max"), MakeVariableRequest(false, Names.Max, FString()), 3, 7);
		AddMaterialUpdateNode(Plan, TEXT("Range"), MakeCallRequest(MaterialUpdateMathLibraryPath, TEXT("MapRangeClamped")), 4, 6,
			{{TEXT("InRangeA"), TEXT("-1.0")}, {TEXT("InRangeB"), TEXT("1.0")}});
		AddMaterialUpdateNode(Plan, TEXT("SetParameter"), MakeCallRequest(MaterialUpdateDynamicClassPath, SetterName), 5, 4, ParameterDefault);
		Plan.Links.Add({TEXT("Time"), TEXT("ReturnValue"), TEXT("Turns"), TEXT("A")});
		Plan.Links.Add({TEXT("Speed"), Names.Speed, TEXT("Turns"), TEXT("B")});
		Plan.Links.Add({TEXT("Turns"), TEXT("ReturnValue"), TEXT("Angle"), TEXT("A")});
		Plan.Links.Add({TEXT("Angle"), TEXT("ReturnValue"), TEXT("Sine"), TEXT("A")});
		Plan.Links.Add({TEXT("Sine"), TEXT("ReturnValue"), TEXT("Range"), TEXT("Value")});
		Plan.Links.Add({TEXT("Min"), Names.Min, TEXT("Range"), TEXT("OutRangeA")});
		Plan.Links.Add({TEXT("Max"), Names.Max, TEXT("Range"), TEXT("OutRangeB")});
		Plan.Links.Add({TEXT("Range"), TEXT("ReturnValue"), TEXT("SetParameter"), TEXT("Value")});
		Plan.Links.Add({TEXT("Instance"), Names.Instance, TEXT("SetParameter"), TEXT("self")});
		return Plan;
	}
}

bool ZorvekMCPBridgeDynamicMaterialUpdate::ParseParameterType(const FString& Word, EParameterType& OutType)
{
	const EParameterType Types[] = {EParameterType::Scalar, EParameterType::Vector};
	for (const EParameterType Type : Types)
	{
		if (Word.Equals(GetMaterialUpdateTypeWord(Type), ESearchCase::IgnoreCase))
		{
			OutType = Type;
			return true;
		}
	}
	return false;
}

bool ZorvekMCPBridgeDynamicMaterialUpdate::ParseValueSource(const FString& Word, EValueSource& OutSource)
{
	const EValueSource Sources[] = {EValueSource::Variable, EValueSource::Time};
	for (const EValueSource Source : Sources)
	{
		if (Word.Equals(GetMaterialUpdateSourceWord(Source), ESearchCase::IgnoreCase))
		{
			OutSource = Source;
			return true;
		}
	}
	return false;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeDynamicMaterialUpdate::AddDynamicMaterialParameterUpdate(IZorvekMCPBridgeEditorPort& Port, const FDynamicMaterialParams& Params)
{
	const auto Fail = [](const FString& Message) { return ZorvekMCPBridgeTools::MakeTextToolResult(Message, true); };
	if (!Params.ArgumentError.IsEmpty())
	{
		return Fail(Params.ArgumentError);
	}
	if (Params.ParameterName.IsEmpty())
	{
		return Fail(TEXT("blueprint_add_dynamic_material_parameter_update requires ParameterName."));
	}
	const bool bVector = Params.ParameterType == EParameterType::Vector;
	const bool bTime = Params.ValueSource == EValueSource::Time;
	if (bVector && bTime)
	{
		return Fail(TEXT("ValueSource Time pulses Scalar parameters only; use ValueSource Variable for a Vector parameter."));
	}
	if (Params.ElementIndex < 0)
	{
		return Fail(TEXT("ElementIndex must be a whole number of 0 or more."));
	}
	const double Speed = Params.Speed.bPresent ? Params.Speed.Value : DefaultPulseSpeed;
	const double Min = Params.Min.bPresent ? Params.Min.Value : DefaultPulseMin;
	const double Max = Params.Max.bPresent ? Params.Max.Value : DefaultPulseMax;
	FString ValueDefault;
	if (!bTime)
	{
		if (bVector)
		{
			ValueDefault = TEXT("(R=1.000000,G=1.000000,B=1.000000,A=1.000000)");
			if (!Params.DefaultValue.IsEmpty() && !MakeMaterialUpdateColorText(Params.DefaultValue, ValueDefault))
			{
				return Fail(FString::Printf(TEXT("DefaultValue '%s' is not a colour; write it as (R=1,G=0.5,B=0,A=1)."), *Params.DefaultValue));
			}
		}
		else
		{
			ValueDefault = TEXT("0.000000");
			const FString Trimmed = Params.DefaultValue.TrimStartAndEnd();
			if (!Trimmed.IsEmpty())
			{
				if (!Trimmed.IsNumeric())
				{
					return Fail(FString::Printf(TEXT("DefaultValue '%s' is not a number."), *Params.DefaultValue));
				}
				ValueDefault = FString::Printf(TEXT("%f"), FCString::Atod(*Trimmed));
			}
		}
	}

	FString Error;
	ZorvekMCPBridgeBlueprintLoading::FLoadedBlueprint Loaded;
	if (!ZorvekMCPBridgeBlueprintLoading::LoadBlueprint(Port, Params.BlueprintNameOrPath, Loaded, Error))
	{
		return Fail(Error);
	}
	FBlueprintComponent Component;
	if (!FindActorComponent(Port, Loaded, Params.ComponentName, MaterialUpdatePrimitiveClassPath, TEXT("primitive component (only primitive components have material slots)"),
		Component, Error))
	{
		return Fail(Error);
	}
	FString SourceMaterial;
	if (!Params.SourceMaterialPath.IsEmpty())
	{
		SourceMaterial = LoadMaterialUpdateSource(Port, Params.SourceMaterialPath);
		if (SourceMaterial.IsEmpty())
		{
			return Fail(FString::Printf(TEXT("Could not resolve Material asset: %s"), *Params.SourceMaterialPath));
		}
	}
	const FString NamePart = MakeMaterialUpdateNamePart(Params.ParameterName);
	FMaterialUpdateNames Names;
	Names.Instance = Component.Name + TEXT("DynamicMaterial");
	Names.Value = Params.VariableName.IsEmpty() ? Component.Name + NamePart : Params.VariableName;
	Names.Speed = Component.Name + NamePart + TEXT("PulseSpeed");
	Names.Min = Component.Name + NamePart + TEXT("PulseMin");
	Names.Max = Component.Name + NamePart + TEXT("PulseMax");
	const FString GraphName = Params.GraphName.IsEmpty() ? FString(ZorvekMCPBridgeBlueprintLoading::DefaultGraphName) : Params.GraphName;

	const FGraphPlan Plan = MakeMaterialUpdatePlan(Params, Component, SourceMaterial, Names, ValueDefault, Speed, Min, Max);
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
	Header->SetNumberField(TEXT("element_index"), Params.ElementIndex);
	Header->SetStringField(TEXT("source_material"), SourceMaterial);
	Header->SetStringField(TEXT("parameter_name"), Params.ParameterName);
	Header->SetStringField(TEXT("parameter_type"), GetMaterialUpdateTypeWord(Params.ParameterType));
	Header->SetStringField(TEXT("value_source"), GetMaterialUpdateSourceWord(Params.ValueSource));
	Header->SetStringField(TEXT("instance_variable"), Names.Instance);
	if (bTime)
	{
		Header->SetNumberField(TEXT("speed"), Speed);
		Header->SetNumberField(TEXT("min"), Min);
		Header->SetNumberField(TEXT("max"), Max);
	}
	else
	{
		Header->SetStringField(TEXT("value_variable"), Names.Value);
	}
	return MakeToolResult(Header, Applied, Loaded.AssetPath, Prepared.GraphName);
}
