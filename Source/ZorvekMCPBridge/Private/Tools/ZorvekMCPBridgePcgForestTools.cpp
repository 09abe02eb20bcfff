#include "Tools/ZorvekMCPBridgePcgForestTools.h"

#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Pcg/ZorvekMCPBridgePcgComponentState.h"
#include "Pcg/ZorvekMCPBridgePcgForest.h"
#include "Pcg/ZorvekMCPBridgePcgGraphAuthoring.h"
#include "Pcg/ZorvekMCPBridgePcgProbe.h"
#include "Server/ZorvekMCPBridgeToolCatalogue.h"
#include "Tools/ZorvekMCPBridgeAssetTools.h"
#include "Tools/ZorvekMCPBridgeToolArguments.h"
#include "World/ZorvekMCPBridgeActorReadback.h"

#include <cmath>

// Helpers of the forest tools in a named namespace: the unity build compiles every Source file as
// one translation unit, where a using-directive inside an anonymous namespace would reach the
// files after this one.
namespace ZorvekMCPBridgePcgForestToolSupport
{
	using namespace ZorvekMCPBridgePcgForest;
	using ZorvekMCPBridgeToolArguments::ReadBool;
	using ZorvekMCPBridgeToolArguments::ReadString;

	const TCHAR* const PcgForestStaticMeshClassPath = TEXT("/Script/Engine.StaticMesh");
	const TCHAR* const PcgForestStandInClassPath = TEXT("/Script/Engine.StaticMeshActor");
	const TCHAR* const PcgForestDefaultStandInMesh = TEXT("/Engine/BasicShapes/Cone.Cone");

	TSharedPtr<FJsonObject> MakePcgForestFailure(const TCHAR* Tool, const FString& Error)
	{
		TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
		Payload->SetBoolField(TEXT("success"), false);
		Payload->SetStringField(TEXT("tool"), Tool);
		Payload->SetStringField(TEXT("error"), Error);
		return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, true);
	}

	FString MakePcgForestOptInError(const TCHAR* Tool)
	{
		return FString::Printf(TEXT("%s requires AllowCurrentLevel=true because this mutates the current editor world."), Tool);
	}

	// A number argument: a JSON number or a number written as text. Absent leaves bPresent false.
	struct FPcgForestNumber
	{
		bool bPresent = false;
		double Value = 0.0;
	};

	FString ReadPcgForestNumber(const TSharedPtr<FJsonObject>& Arguments, const TCHAR* Key, FPcgForestNumber& OutNumber)
	{
		OutNumber = FPcgForestNumber();
		const TSharedPtr<FJsonValue> Value = Arguments.IsValid() ? Arguments->TryGetField(Key) : nullptr;
		if (!Value.IsValid())
		{
			return FString();
		}
		double Number = 0.0;
		FString Text;
		if (Value->Type == EJson::Number)
		{
			Number = Value->AsNumber();
		}
		else if (Value->Type == EJson::String && Value->TryGetString(Text) && !Text.TrimStartAndEnd().IsEmpty() && Text.TrimStartAndEnd().IsNumeric())
		{
			Number = FCString::Atod(*Text.TrimStartAndEnd());
		}
		else
		{
			return FString::Printf(TEXT("%s must be a number."), Key);
		}
		if (!std::isfinite(Number))
		{
			return FString::Printf(TEXT("%s must be a finite number."), Key);
		}
		OutNumber.bPresent = true;
		OutNumber.Value = Number;
		return FString();
	}

	// Reads the keys in order and stops at the first refusal.
	FString ReadPcgForestNumbers(const TSharedPtr<FJsonObject>& Arguments, std::initializer_list<TPair<const TCHAR*, FPcgForestNumber*>> Keys)
	{
		for (const TPair<const TCHAR*, FPcgForestNumber*>& Key : Keys)
		{
			const FString Error = ReadPcgForestNumber(Arguments, Key.Key, *Key.Value);
			if (!Error.IsEmpty())
			{
				return Error;
			}
		}
		return FString();
	}

	FString CheckPcgForestSize(const TCHAR* Key, double Value)
	{
		if (Value <= 0.0)
		{
			return FString::Printf(TEXT("%s must be greater than 0 (centimetres)."), Key);
		}
		if (Value > MaxSize)
		{
			return FString::Printf(TEXT("%s is out of range (at most %.0f centimetres)."), Key, MaxSize);
		}
		return FString();
	}

	FString CheckPcgForestDensity(double Density)
	{
		if (Density <= 0.0 || Density > MaxDensity)
		{
			return FString::Printf(TEXT("Density must be greater than 0 and at most %g trees per square metre."), MaxDensity);
		}
		return FString();
	}

	FString CheckPcgForestLooseness(double Looseness)
	{
		return Looseness < 0.0 || Looseness > 1.0 ? FString(TEXT("Looseness must be between 0 and 1.")) : FString();
	}

	// MeshPaths: an array of static mesh object paths, or one path; each must load as a mesh.
	FString ReadPcgForestMeshes(IZorvekMCPBridgeEditorPort& Port, const TSharedPtr<FJsonObject>& Arguments, TArray<TPair<FString, int32>>& OutMeshes, bool& bOutGiven)
	{
		TArray<FString> Paths;
		const TArray<TSharedPtr<FJsonValue>>* Array = nullptr;
		const TSharedPtr<FJsonValue> Field = Arguments.IsValid() ? Arguments->TryGetField(TEXT("MeshPaths")) : nullptr;
		if (Field.IsValid() && Field->TryGetArray(Array))
		{
			for (const TSharedPtr<FJsonValue>& Value : *Array)
			{
				FString Text;
				if (!Value.IsValid() || !Value->TryGetString(Text) || Text.TrimStartAndEnd().IsEmpty())
				{
					return TEXT("MeshPaths must hold static mesh paths as strings.");
				}
				Paths.Add(Text.TrimStartAndEnd());
			}
		}
		else if (Field.IsValid() && Field->Type == EJson::String)
		{
			const FString Text = ReadString(Arguments, TEXT("MeshPaths"), FString()).TrimStartAndEnd();
			if (!Text.IsEmpty())
			{
				Paths.Add(Text);
			}
		}
		else if (Field.IsValid() && Field->Type != EJson::Null)
		{
			return TEXT("MeshPaths must be an array of static mesh paths.");
		}
		bOutGiven = !Paths.IsEmpty();
		OutMeshes.Reset();
		for (const FString& Path : Paths)
		{
			const FZorvekMCPBridgeObjectHandle Mesh = Port.GetObjects().LoadObject(Path);
			if (!Port.GetObjects().IsA(Mesh, PcgForestStaticMeshClassPath))
			{
				return FString::Printf(TEXT("Could not load static mesh '%s'."), *Path);
			}
			OutMeshes.Add({Port.GetObjects().GetIdentity(Mesh).ObjectPath, 1});
		}
		if (OutMeshes.IsEmpty())
		{
			OutMeshes = GetDefaultMeshes();
		}
		return FString();
	}

	// Where the forest graph goes and whether one is there to reuse.
	struct FPcgForestGraphPlan
	{
		FString PackageName;
		FString AssetName;
		FString ObjectPath;
		FZorvekMCPBridgeObjectHandle Existing;
		FForestGraphNodes ExistingNodes;
	};

	FString PlanPcgForestGraph(IZorvekMCPBridgeEditorPort& Port, const FString& GraphPath, FPcgForestGraphPlan& OutPlan)
	{
		OutPlan = FPcgForestGraphPlan();
		OutPlan.ObjectPath = ToGraphObjectPath(GraphPath);
		OutPlan.ObjectPath.Split(TEXT("."), &OutPlan.PackageName, &OutPlan.AssetName);
		FString Reason;
		if (OutPlan.AssetName.IsEmpty() || OutPlan.AssetName.Contains(TEXT(".")) || OutPlan.AssetName.Contains(TEXT(":"))
			|| !Port.GetAssetAuthoring().IsValidLongPackageName(OutPlan.PackageName, Reason))
		{
			return FString::Printf(TEXT("GraphPath '%s' is not a valid asset path: %s"), *GraphPath, Reason.IsEmpty() ? TEXT("it needs a package and an asset name.") : *Reason);
		}
		OutPlan.Existing = Port.GetObjects().LoadObject(OutPlan.ObjectPath);
		if (!OutPlan.Existing.IsValid())
		{
			return FString();
		}
		if (!Port.GetObjects().IsA(OutPlan.Existing, ZorvekMCPBridgePcgGraphAuthoring::GraphClassPath))
		{
			return FString::Printf(TEXT("'%s' exists and is not a PCG graph."), *OutPlan.ObjectPath);
		}
		OutPlan.ExistingNodes = FindForestNodes(Port, OutPlan.Existing);
		if (!OutPlan.ExistingNodes.IsComplete())
		{
			return FString::Printf(TEXT("'%s' exists and is not a forest graph (it lacks a surface sampler, density filter or static mesh spawner). Choose another GraphPath."), *OutPlan.ObjectPath);
		}
		return FString();
	}

	// Creates and builds the graph, or writes the settings into the one that is there.
	bool ApplyPcgForestGraphPlan(IZorvekMCPBridgeEditorPort& Port, const FPcgForestGraphPlan& Plan, const FForestGraphSettings& Settings, bool bSetMeshes, FZorvekMCPBridgeObjectHandle& OutGraph, TArray<FString>& OutSteps, FString& OutError)
	{
		if (Plan.Existing.IsValid())
		{
			OutGraph = Plan.Existing;
			if (!ApplyForestSettings(Port, OutGraph, Plan.ExistingNodes, Settings, bSetMeshes, OutError))
			{
				return false;
			}
			Port.GetAssetAuthoring().MarkPackageDirty(OutGraph);
			OutSteps.Add(TEXT("update_node_settings"));
			return true;
		}
		if (!ZorvekMCPBridgePcgGraphAuthoring::CreateGraphAsset(Port, Plan.PackageName, Plan.AssetName, OutGraph, OutError))
		{
			return false;
		}
		OutSteps.Add(TEXT("create_graph_asset"));
		return BuildForestGraph(Port, OutGraph, Settings, OutSteps, OutError);
	}

	TArray<TSharedPtr<FJsonValue>> ToPcgForestStrings(const TArray<FString>& Texts)
	{
		TArray<TSharedPtr<FJsonValue>> Values;
		for (const FString& Text : Texts)
		{
			Values.Add(MakeShared<FJsonValueString>(Text));
		}
		return Values;
	}

	TSharedPtr<FJsonObject> ReadPcgForestActorJson(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Actor)
	{
		IZorvekMCPBridgeWorld& World = Port.GetWorld();
		return ZorvekMCPBridgeActorReadback::ReadActorReadback(World, Actor, World.GetSelectedLevelActors().Contains(Actor));
	}

	bool IsPcgForestLabelTaken(IZorvekMCPBridgeEditorPort& Port, const FString& Label)
	{
		for (const FZorvekMCPBridgeActorEntry& Actor : Port.GetWorld().GetAllLevelActors())
		{
			if (Actor.Label.Equals(Label, ESearchCase::IgnoreCase))
			{
				return true;
			}
		}
		return false;
	}

	// The arguments of the placing tools, read and checked.
	struct FPcgForestPlacement
	{
		FString Label;
		FZorvekMCPBridgeVector Location;
		FZorvekMCPBridgeVector Size = {DefaultSize, DefaultSize, DefaultHeight};
		int32 Seed = DefaultSeed;

		FString Read(const TSharedPtr<FJsonObject>& Arguments)
		{
			Label = ReadString(Arguments, TEXT("ActorLabel"), FString()).TrimStartAndEnd();
			if (Label.IsEmpty())
			{
				Label = DefaultActorLabel;
			}
			FPcgForestNumber X, Y, Z, SizeX, SizeY, SizeZ;
			const FString Error = ReadPcgForestNumbers(Arguments, {{TEXT("LocationX"), &X}, {TEXT("LocationY"), &Y}, {TEXT("LocationZ"), &Z}, {TEXT("SizeX"), &SizeX}, {TEXT("SizeY"), &SizeY}, {TEXT("SizeZ"), &SizeZ}});
			if (!Error.IsEmpty())
			{
				return Error;
			}
			for (const FPcgForestNumber* Coordinate : {&X, &Y, &Z})
			{
				if (Coordinate->bPresent && FMath::Abs(Coordinate->Value) > MaxSize)
				{
					return FString::Printf(TEXT("Location is out of range (at most %.0f in magnitude)."), MaxSize);
				}
			}
			Location = {X.bPresent ? X.Value : 0.0, Y.bPresent ? Y.Value : 0.0, Z.bPresent ? Z.Value : 0.0};
			Size = {SizeX.bPresent ? SizeX.Value : DefaultSize, SizeY.bPresent ? SizeY.Value : DefaultSize, SizeZ.bPresent ? SizeZ.Value : DefaultHeight};
			for (const TPair<const TCHAR*, double>& Axis : {TPair<const TCHAR*, double>(TEXT("SizeX"), Size.X), TPair<const TCHAR*, double>(TEXT("SizeY"), Size.Y), TPair<const TCHAR*, double>(TEXT("SizeZ"), Size.Z)})
			{
				const FString SizeError = CheckPcgForestSize(Axis.Key, Axis.Value);
				if (!SizeError.IsEmpty())
				{
					return SizeError;
				}
			}
			Seed = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, TEXT("Seed"), DefaultSeed);
			return FString();
		}
	};

	// The graph arguments of the authoring tools, read and checked.
	struct FPcgForestGraphArguments
	{
		FString GraphPath;
		FForestGraphSettings Settings;
		bool bDensityGiven = false;
		bool bLoosenessGiven = false;
		bool bMeshesGiven = false;

		FString Read(IZorvekMCPBridgeEditorPort& Port, const TSharedPtr<FJsonObject>& Arguments)
		{
			GraphPath = ReadString(Arguments, TEXT("GraphPath"), FString()).TrimStartAndEnd();
			if (GraphPath.IsEmpty())
			{
				GraphPath = DefaultGraphPath;
			}
			FPcgForestNumber Density, Looseness;
			FString Error = ReadPcgForestNumbers(Arguments, {{TEXT("Density"), &Density}, {TEXT("Looseness"), &Looseness}});
			if (!Error.IsEmpty())
			{
				return Error;
			}
			bDensityGiven = Density.bPresent;
			bLoosenessGiven = Looseness.bPresent;
			Settings.Density = Density.bPresent ? Density.Value : DefaultDensity;
			Settings.Looseness = Looseness.bPresent ? Looseness.Value : DefaultLooseness;
			Error = CheckPcgForestDensity(Settings.Density);
			if (Error.IsEmpty())
			{
				Error = CheckPcgForestLooseness(Settings.Looseness);
			}
			return Error.IsEmpty() ? ReadPcgForestMeshes(Port, Arguments, Settings.Meshes, bMeshesGiven) : Error;
		}
	};

	// The checks every level-changing tool makes before anything else: PCG usable, opt-in, world.
	TSharedPtr<FJsonObject> CheckPcgForestLevelAccess(IZorvekMCPBridgeEditorPort& Port, const TCHAR* Tool, const TCHAR* Operation, const TSharedPtr<FJsonObject>& Arguments)
	{
		IZorvekMCPBridgeWorld& World = Port.GetWorld();
		if (!ZorvekMCPBridgePcgProbe::Probe(World).IsAvailable())
		{
			return ZorvekMCPBridgePcgProbe::MakeUnavailableResult(World, Tool, Arguments, Operation);
		}
		if (!ReadBool(Arguments, TEXT("AllowCurrentLevel"), false))
		{
			return MakePcgForestFailure(Tool, MakePcgForestOptInError(Tool));
		}
		FZorvekMCPBridgeWorldInfo Info;
		if (!World.IsActorSubsystemAvailable() || !World.GetEditorWorld(Info))
		{
			return MakePcgForestFailure(Tool, TEXT("Editor actor subsystem or editor world is unavailable."));
		}
		return nullptr;
	}

	// A forest volume named by ForestActorNameOrLabel, with its component and complete forest graph.
	FString FindPcgForestForChange(IZorvekMCPBridgeEditorPort& Port, const FString& Name, FForestActor& OutForest, FForestGraphNodes& OutNodes)
	{
		OutForest = FindForestActor(Port, Name);
		if (!OutForest.bFound)
		{
			return ZorvekMCPBridgeActorReadback::MakeActorNotFoundMessage(Name);
		}
		if (!OutForest.Component.IsValid())
		{
			return TEXT("Forest actor has no PCG component.");
		}
		OutNodes = FindForestNodes(Port, OutForest.Graph);
		if (!OutNodes.IsComplete())
		{
			return FString::Printf(TEXT("'%s' does not run a forest graph from pcg_create_forest_repro."), *Name);
		}
		return FString();
	}

	TArray<TSharedPtr<FJsonValue>> MakePcgForestNextSteps(const FString& Label)
	{
		return ToPcgForestStrings({
			FString::Printf(TEXT("Generation is asynchronous: call pcg_inspect_generated with ForestActorNameOrLabel=%s after the editor has ticked."), *Label),
			FString::Printf(TEXT("Call pcg_create_visual_repro_output with ForestActorNameOrLabel=%s and AllowCurrentLevel=true for stand-in tree actors at the generated points."), *Label),
			TEXT("Call pcg_update_forest_recipe to make the forest bigger, denser or more natural, and editor_cleanup_repro_actors to remove it."),
		});
	}

	// Destroys the forest's stand-in trees; they show points of a generation that is replaced.
	int32 RemovePcgForestVisualOutputs(IZorvekMCPBridgeEditorPort& Port, const FString& Label)
	{
		const TArray<FZorvekMCPBridgeObjectHandle> Previous = FindVisualOutputs(Port, Label);
		if (!Previous.IsEmpty())
		{
			Port.GetWorld().DestroyActors(Previous);
		}
		return Previous.Num();
	}
}

namespace ZorvekMCPBridgePcgForestTools
{
using namespace ZorvekMCPBridgePcgForestToolSupport;

TSharedPtr<FJsonObject> HandleCreateForestRepro(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const TCHAR* Tool = TEXT("pcg_create_forest_repro");
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(Tool);
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	if (!ZorvekMCPBridgePcgProbe::Probe(Port.GetWorld()).IsAvailable())
	{
		return ZorvekMCPBridgePcgProbe::MakeUnavailableResult(Port.GetWorld(), Tool, Arguments, TEXT("create_graph"));
	}
	FPcgForestGraphArguments Params;
	FString Error = Params.Read(Port, Arguments);
	FPcgForestGraphPlan Plan;
	if (Error.IsEmpty())
	{
		Error = PlanPcgForestGraph(Port, Params.GraphPath, Plan);
	}
	if (!Error.IsEmpty())
	{
		return MakePcgForestFailure(Tool, Error);
	}
	TArray<FString> Steps;
	FZorvekMCPBridgeObjectHandle Graph;
	const bool bReused = Plan.Existing.IsValid();
	// A reused graph keeps its meshes unless the call names new ones.
	if (!ApplyPcgForestGraphPlan(Port, Plan, Params.Settings, !bReused || Params.bMeshesGiven, Graph, Steps, Error))
	{
		return MakePcgForestFailure(Tool, Error);
	}
	FZorvekMCPBridgePcgGraphSnapshot Snapshot;
	ZorvekMCPBridgePcgGraphAuthoring::ReadGraph(Port, Graph, Snapshot);
	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), true);
	Payload->SetBoolField(TEXT("created"), !bReused);
	Payload->SetBoolField(TEXT("reused"), bReused);
	Payload->SetStringField(TEXT("graph_path"), Plan.ObjectPath);
	Payload->SetObjectField(TEXT("settings"), MakeSettingsJson(Params.Settings));
	Payload->SetArrayField(TEXT("steps"), ToPcgForestStrings(Steps));
	Payload->SetObjectField(TEXT("graph"), ZorvekMCPBridgePcgGraphAuthoring::MakeGraphJson(Port, Snapshot));
	Payload->SetStringField(TEXT("note"), TEXT("The graph asset is marked dirty, not saved. Place it with pcg_place_forest_actor or run pcg_run_forest_recipe."));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}

TSharedPtr<FJsonObject> HandlePlaceForestActor(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const TCHAR* Tool = TEXT("pcg_place_forest_actor");
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(Tool);
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	if (const TSharedPtr<FJsonObject> Refusal = CheckPcgForestLevelAccess(Port, Tool, TEXT("place"), Arguments))
	{
		return Refusal;
	}
	FPcgForestPlacement Placement;
	FString Error = Placement.Read(Arguments);
	const FString GraphPath = ReadString(Arguments, TEXT("GraphPath"), DefaultGraphPath).TrimStartAndEnd();
	const FZorvekMCPBridgeObjectHandle Graph = Error.IsEmpty() ? LoadGraph(Port, GraphPath) : FZorvekMCPBridgeObjectHandle();
	const FForestGraphNodes Nodes = FindForestNodes(Port, Graph);
	if (Error.IsEmpty() && !Graph.IsValid())
	{
		Error = FString::Printf(TEXT("Could not load PCG graph '%s'. Call pcg_create_forest_repro first."), *GraphPath);
	}
	if (Error.IsEmpty() && IsPcgForestLabelTaken(Port, Placement.Label))
	{
		Error = FString::Printf(TEXT("An actor labelled '%s' already exists in the editor world. Choose another ActorLabel or remove it with editor_cleanup_repro_actors."), *Placement.Label);
	}
	// Graphs without a surface sampler are placed too; only a sampler's density can be estimated.
	const double Density = Nodes.Sampler.IsValid() ? ReadForestSettings(Port, Nodes).Density : 0.0;
	if (Error.IsEmpty())
	{
		Error = CheckPointEstimate(Placement.Size.X, Placement.Size.Y, Density);
	}
	if (!Error.IsEmpty())
	{
		return MakePcgForestFailure(Tool, Error);
	}
	const FZorvekMCPBridgeObjectHandle Actor = PlaceForestVolume(Port, Placement.Label, Placement.Location, Placement.Size, Placement.Seed, Graph, Error);
	if (!Actor.IsValid())
	{
		return MakePcgForestFailure(Tool, Error);
	}
	bool bRequested = false;
	FString GenerateError;
	if (ReadBool(Arguments, TEXT("Generate"), true))
	{
		const FForestActor Forest = FindForestActor(Port, Placement.Label);
		bRequested = RequestGeneration(Port, Forest.Component, GenerateError);
	}
	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), true);
	Payload->SetBoolField(TEXT("placed"), true);
	Payload->SetBoolField(TEXT("generation_requested"), bRequested);
	Payload->SetStringField(TEXT("status"), bRequested ? TEXT("pcg_generation_requested") : TEXT("pcg_forest_placed"));
	Payload->SetStringField(TEXT("graph_path"), Port.GetObjects().GetIdentity(Graph).ObjectPath);
	Payload->SetObjectField(TEXT("size"), MakeSizeJson(Placement.Size));
	Payload->SetNumberField(TEXT("seed"), Placement.Seed);
	Payload->SetNumberField(TEXT("estimated_point_count"), (double)EstimatePointCount(Placement.Size.X, Placement.Size.Y, Density));
	Payload->SetObjectField(TEXT("actor"), ReadPcgForestActorJson(Port, Actor));
	if (!GenerateError.IsEmpty())
	{
		Payload->SetStringField(TEXT("generate_error"), GenerateError);
	}
	Payload->SetArrayField(TEXT("next_steps"), MakePcgForestNextSteps(Placement.Label));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}

TSharedPtr<FJsonObject> HandleInspectGraph(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const TCHAR* Tool = TEXT("pcg_inspect_graph");
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(Tool);
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	if (!ZorvekMCPBridgePcgProbe::Probe(Port.GetWorld()).IsAvailable())
	{
		return ZorvekMCPBridgePcgProbe::MakeUnavailableResult(Port.GetWorld(), Tool, Arguments, TEXT("inspect_graph"));
	}
	// A graph by path, or the graph a forest actor's PCG component runs.
	const FString ActorName = ReadString(Arguments, TEXT("ForestActorNameOrLabel"), FString()).TrimStartAndEnd();
	FString GraphPath = ReadString(Arguments, TEXT("GraphPath"), FString()).TrimStartAndEnd();
	FZorvekMCPBridgeObjectHandle Graph;
	if (!ActorName.IsEmpty() && GraphPath.IsEmpty())
	{
		const FForestActor Forest = FindForestActor(Port, ActorName);
		if (!Forest.bFound)
		{
			return MakePcgForestFailure(Tool, ZorvekMCPBridgeActorReadback::MakeActorNotFoundMessage(ActorName));
		}
		Graph = Forest.Graph;
		if (!Graph.IsValid())
		{
			return MakePcgForestFailure(Tool, Forest.Component.IsValid() ? TEXT("Forest actor's PCG component has no graph.") : TEXT("Forest actor has no PCG component."));
		}
	}
	else
	{
		GraphPath = GraphPath.IsEmpty() ? FString(DefaultGraphPath) : GraphPath;
		Graph = LoadGraph(Port, GraphPath);
		if (!Graph.IsValid())
		{
			return MakePcgForestFailure(Tool, FString::Printf(TEXT("Could not load PCG graph '%s'."), *GraphPath));
		}
	}
	FZorvekMCPBridgePcgGraphSnapshot Snapshot;
	ZorvekMCPBridgePcgGraphAuthoring::ReadGraph(Port, Graph, Snapshot);
	const FForestGraphNodes Nodes = FindForestNodes(Port, Graph);
	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), true);
	Payload->SetStringField(TEXT("graph_path"), Snapshot.GraphPath);
	Payload->SetBoolField(TEXT("is_forest_graph"), Nodes.IsComplete());
	if (Nodes.IsComplete())
	{
		Payload->SetObjectField(TEXT("forest_settings"), MakeSettingsJson(ReadForestSettings(Port, Nodes)));
	}
	Payload->SetObjectField(TEXT("graph"), ZorvekMCPBridgePcgGraphAuthoring::MakeGraphJson(Port, Snapshot));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}

TSharedPtr<FJsonObject> HandleSetForestBounds(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const TCHAR* Tool = TEXT("pcg_set_forest_bounds");
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(Tool);
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	if (const TSharedPtr<FJsonObject> Refusal = CheckPcgForestLevelAccess(Port, Tool, TEXT("set_bounds"), Arguments))
	{
		return Refusal;
	}
	const FString Name = ReadString(Arguments, TEXT("ForestActorNameOrLabel"), FString());
	FForestActor Forest;
	FForestGraphNodes Nodes;
	FPcgForestNumber SizeX, SizeY, SizeZ;
	FString Error = ReadPcgForestNumbers(Arguments, {{TEXT("SizeX"), &SizeX}, {TEXT("SizeY"), &SizeY}, {TEXT("SizeZ"), &SizeZ}});
	if (Error.IsEmpty())
	{
		Error = FindPcgForestForChange(Port, Name, Forest, Nodes);
	}
	const FZorvekMCPBridgeVector Previous = Forest.Size;
	const FZorvekMCPBridgeVector Size = {SizeX.bPresent ? SizeX.Value : Previous.X, SizeY.bPresent ? SizeY.Value : Previous.Y, SizeZ.bPresent ? SizeZ.Value : Previous.Z};
	if (Error.IsEmpty() && !SizeX.bPresent && !SizeY.bPresent && !SizeZ.bPresent)
	{
		Error = TEXT("pcg_set_forest_bounds needs SizeX, SizeY or SizeZ.");
	}
	for (const TPair<const TCHAR*, double>& Axis : {TPair<const TCHAR*, double>(TEXT("SizeX"), Size.X), TPair<const TCHAR*, double>(TEXT("SizeY"), Size.Y), TPair<const TCHAR*, double>(TEXT("SizeZ"), Size.Z)})
	{
		Error = Error.IsEmpty() ? CheckPcgForestSize(Axis.Key, Axis.Value) : Error;
	}
	const double Density = Nodes.IsComplete() ? ReadForestSettings(Port, Nodes).Density : 0.0;
	Error = Error.IsEmpty() ? CheckPointEstimate(Size.X, Size.Y, Density) : Error;
	if (!Error.IsEmpty())
	{
		return MakePcgForestFailure(Tool, Error);
	}
	SetVolumeSize(Port, Forest.Snapshot.Entry.Actor, Size);
	const int32 Removed = RemovePcgForestVisualOutputs(Port, Forest.Snapshot.Entry.Label);
	FString GenerateError;
	const bool bRequested = ReadBool(Arguments, TEXT("Generate"), true) && RequestGeneration(Port, Forest.Component, GenerateError);
	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), true);
	Payload->SetBoolField(TEXT("updated"), true);
	Payload->SetBoolField(TEXT("generation_requested"), bRequested);
	Payload->SetObjectField(TEXT("previous_size"), MakeSizeJson(Previous));
	Payload->SetObjectField(TEXT("size"), MakeSizeJson(Size));
	Payload->SetNumberField(TEXT("estimated_point_count"), (double)EstimatePointCount(Size.X, Size.Y, Density));
	Payload->SetNumberField(TEXT("removed_visual_output_count"), Removed);
	Payload->SetObjectField(TEXT("actor"), ReadPcgForestActorJson(Port, Forest.Snapshot.Entry.Actor));
	if (!GenerateError.IsEmpty())
	{
		Payload->SetStringField(TEXT("generate_error"), GenerateError);
	}
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, false);
}

TSharedPtr<FJsonObject> HandleCreateVisualReproOutput(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const TCHAR* Tool = TEXT("pcg_create_visual_repro_output");
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(Tool);
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	if (const TSharedPtr<FJsonObject> Refusal = CheckPcgForestLevelAccess(Port, Tool, TEXT("create_visual_output"), Arguments))
	{
		return Refusal;
	}
	const FString Name = ReadString(Arguments, TEXT("ForestActorNameOrLabel"), FString());
	const int32 MaxActors = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, TEXT("MaxActors"), DefaultVisualOutputActors);
	const FString MeshPath = ReadString(Arguments, TEXT("MeshPath"), PcgForestDefaultStandInMesh).TrimStartAndEnd();
	const FForestActor Forest = FindForestActor(Port, Name);
	FString Error;
	if (MaxActors < 1 || MaxActors > MaxVisualOutputActors)
	{
		Error = FString::Printf(TEXT("MaxActors must be between 1 and %d."), MaxVisualOutputActors);
	}
	else if (!Forest.bFound)
	{
		Error = ZorvekMCPBridgeActorReadback::MakeActorNotFoundMessage(Name);
	}
	else if (!Forest.Component.IsValid())
	{
		Error = TEXT("Forest actor has no PCG component.");
	}
	else if (!ZorvekMCPBridgePcgComponentState::ReadGenerated(Port, Forest.Component))
	{
		Error = TEXT("Forest actor has not generated yet. Call pcg_generate (or a forest recipe), let the editor tick, then call this again.");
	}
	const FZorvekMCPBridgeObjectHandle Mesh = Error.IsEmpty() ? Port.GetObjects().LoadObject(MeshPath) : FZorvekMCPBridgeObjectHandle();
	if (Error.IsEmpty() && !Port.GetObjects().IsA(Mesh, PcgForestStaticMeshClassPath))
	{
		Error = FString::Printf(TEXT("Could not load static mesh '%s'."), *MeshPath);
	}
	if (!Error.IsEmpty())
	{
		return MakePcgForestFailure(Tool, Error);
	}
	const TArray<FZorvekMCPBridgeVector> Points = ReadGeneratedPoints(Port, Forest.Component, MaxActors + 1);
	const bool bTruncated = Points.Num() > MaxActors;

	// Repeated calls replace the forest's stand-ins instead of adding to them.
	const FString Label = Forest.Snapshot.Entry.Label;
	const int32 Removed = RemovePcgForestVisualOutputs(Port, Label);
	IZorvekMCPBridgeWorld& World = Port.GetWorld();
	const TArray<FName> Tags = {FName(ZorvekMCPBridgeActorReadback::BridgeTag), FName(ZorvekMCPBridgeActorReadback::ReproTag), FName(ZorvekMCPBridgeActorReadback::VisualPcgTag), FName(VisualOutputTag), FName(*MakeForestOutputTag(Label))};
	TArray<FString> Created;
	FString SpawnError;
	const FString StandInLabel = FString::Printf(TEXT("%s_Tree"), *Label);
	for (int32 Index = 0; Index < FMath::Min(Points.Num(), MaxActors); ++Index)
	{
		const FZorvekMCPBridgeObjectHandle Actor = World.SpawnActorFromClass(PcgForestStandInClassPath, Points[Index], FZorvekMCPBridgeRotator());
		FZorvekMCPBridgeActorSnapshot Snapshot;
		if (!Actor.IsValid() || !World.ReadActor(Actor, Snapshot))
		{
			SpawnError = FString::Printf(TEXT("Could not spawn actor of class '%s'."), PcgForestStandInClassPath);
			break;
		}
		World.AddActorTags(Actor, Tags);
		// Labelled after the forest, so a cleanup filtered by the forest's label takes them too.
		World.SetActorLabel(Actor, StandInLabel);
		for (const FZorvekMCPBridgeActorComponentSnapshot& Component : Snapshot.Components)
		{
			if (Component.bIsStaticMeshComponent)
			{
				FZorvekMCPBridgeFunctionInfo Function;
				const FString ClassPath = Port.GetObjects().GetClassInfo(Component.Component).Path;
				TUniquePtr<IZorvekMCPBridgeParameterBlock> Block = Port.GetFunctions().FindFunction(ClassPath, TEXT("SetStaticMesh"), TArray<FString>(), Function) ? Port.GetFunctions().CreateParameterBlock(ClassPath, Function.Name) : nullptr;
				if (Block.IsValid() && Block->SetObjectValue(0, Mesh))
				{
					Port.GetFunctions().CallFunction(Component.Component, *Block);
				}
				break;
			}
		}
		Created.Add(Snapshot.Entry.Name);
	}
	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), SpawnError.IsEmpty());
	Payload->SetBoolField(TEXT("created"), !Created.IsEmpty());
	Payload->SetStringField(TEXT("forest_actor_label"), Label);
	Payload->SetNumberField(TEXT("visual_output_count"), Created.Num());
	Payload->SetNumberField(TEXT("removed_visual_output_count"), Removed);
	Payload->SetBoolField(TEXT("truncated"), bTruncated);
	Payload->SetNumberField(TEXT("max_actors"), MaxActors);
	Payload->SetStringField(TEXT("mesh"), Port.GetObjects().GetIdentity(Mesh).ObjectPath);
	Payload->SetArrayField(TEXT("tags"), ToPcgForestStrings({VisualOutputTag, MakeForestOutputTag(Label)}));
	Payload->SetArrayField(TEXT("actor_names"), ToPcgForestStrings(Created));
	if (!SpawnError.IsEmpty())
	{
		Payload->SetStringField(TEXT("error"), SpawnError);
	}
	Payload->SetStringField(TEXT("note"), TEXT("Stand-in static mesh actors at the generated points, for screenshots and review; they are repro actors that editor_cleanup_repro_actors removes, and pcg_inspect_generated counts them as visual_output_count."));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, !SpawnError.IsEmpty());
}

TSharedPtr<FJsonObject> HandleRunForestRecipe(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const TCHAR* Tool = TEXT("pcg_run_forest_recipe");
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(Tool);
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	if (const TSharedPtr<FJsonObject> Refusal = CheckPcgForestLevelAccess(Port, Tool, TEXT("run_recipe"), Arguments))
	{
		return Refusal;
	}
	FPcgForestGraphArguments GraphArguments;
	FPcgForestPlacement Placement;
	FPcgForestGraphPlan Plan;
	FString Error = GraphArguments.Read(Port, Arguments);
	Error = Error.IsEmpty() ? Placement.Read(Arguments) : Error;
	Error = Error.IsEmpty() ? PlanPcgForestGraph(Port, GraphArguments.GraphPath, Plan) : Error;
	if (Error.IsEmpty() && IsPcgForestLabelTaken(Port, Placement.Label))
	{
		Error = FString::Printf(TEXT("An actor labelled '%s' already exists in the editor world. Use pcg_update_forest_recipe to change that forest, or remove it with editor_cleanup_repro_actors."), *Placement.Label);
	}
	Error = Error.IsEmpty() ? CheckPointEstimate(Placement.Size.X, Placement.Size.Y, GraphArguments.Settings.Density) : Error;
	if (!Error.IsEmpty())
	{
		return MakePcgForestFailure(Tool, Error);
	}

	TArray<TSharedPtr<FJsonValue>> Steps;
	const auto AddStep = [&Steps](const FString& Name, TSharedPtr<FJsonObject> Step)
	{
		Step->SetStringField(TEXT("step"), Name);
		Steps.Add(MakeShared<FJsonValueObject>(Step));
	};
	TArray<FString> GraphSteps;
	FZorvekMCPBridgeObjectHandle Graph;
	const bool bReused = Plan.Existing.IsValid();
	const bool bGraphReady = ApplyPcgForestGraphPlan(Port, Plan, GraphArguments.Settings, !bReused || GraphArguments.bMeshesGiven, Graph, GraphSteps, Error);
	TSharedPtr<FJsonObject> GraphStep = MakeShared<FJsonObject>();
	GraphStep->SetBoolField(TEXT("success"), bGraphReady);
	GraphStep->SetStringField(TEXT("graph_path"), Plan.ObjectPath);
	GraphStep->SetBoolField(TEXT("reused"), bReused);
	GraphStep->SetArrayField(TEXT("actions"), ToPcgForestStrings(GraphSteps));
	AddStep(bReused ? TEXT("reuse_graph") : TEXT("create_graph"), GraphStep);
	FZorvekMCPBridgeObjectHandle Actor;
	if (bGraphReady)
	{
		Actor = PlaceForestVolume(Port, Placement.Label, Placement.Location, Placement.Size, Placement.Seed, Graph, Error);
		TSharedPtr<FJsonObject> PlaceStep = MakeShared<FJsonObject>();
		PlaceStep->SetBoolField(TEXT("success"), Actor.IsValid());
		PlaceStep->SetStringField(TEXT("actor_label"), Placement.Label);
		PlaceStep->SetNumberField(TEXT("seed"), Placement.Seed);
		AddStep(TEXT("place_volume"), PlaceStep);
	}
	if (Actor.IsValid())
	{
		TSharedPtr<FJsonObject> BoundsStep = MakeShared<FJsonObject>();
		BoundsStep->SetBoolField(TEXT("success"), true);
		BoundsStep->SetObjectField(TEXT("size"), MakeSizeJson(Placement.Size));
		BoundsStep->SetNumberField(TEXT("estimated_point_count"), (double)EstimatePointCount(Placement.Size.X, Placement.Size.Y, GraphArguments.Settings.Density));
		AddStep(TEXT("set_bounds"), BoundsStep);
	}
	bool bRequested = false;
	if (Actor.IsValid())
	{
		const FForestActor Forest = FindForestActor(Port, Placement.Label);
		bRequested = RequestGeneration(Port, Forest.Component, Error);
		TSharedPtr<FJsonObject> GenerateStep = MakeShared<FJsonObject>();
		GenerateStep->SetBoolField(TEXT("success"), bRequested);
		GenerateStep->SetBoolField(TEXT("generation_requested"), bRequested);
		AddStep(TEXT("generate"), GenerateStep);
	}

	const bool bSuccess = Actor.IsValid() && bRequested;
	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), bSuccess);
	Payload->SetStringField(TEXT("tool"), Tool);
	Payload->SetStringField(TEXT("status"), bSuccess ? TEXT("pcg_forest_generation_requested") : TEXT("pcg_forest_recipe_failed"));
	Payload->SetArrayField(TEXT("steps"), Steps);
	Payload->SetStringField(TEXT("graph_path"), Plan.ObjectPath);
	Payload->SetObjectField(TEXT("settings"), MakeSettingsJson(GraphArguments.Settings));
	Payload->SetObjectField(TEXT("size"), MakeSizeJson(Placement.Size));
	Payload->SetNumberField(TEXT("seed"), Placement.Seed);
	Payload->SetNumberField(TEXT("estimated_point_count"), (double)EstimatePointCount(Placement.Size.X, Placement.Size.Y, GraphArguments.Settings.Density));
	Payload->SetBoolField(TEXT("generation_requested"), bRequested);
	if (Actor.IsValid())
	{
		Payload->SetObjectField(TEXT("actor"), ReadPcgForestActorJson(Port, Actor));
	}
	if (!bSuccess)
	{
		Payload->SetStringField(TEXT("error"), Error);
	}
	Payload->SetArrayField(TEXT("next_steps"), MakePcgForestNextSteps(Placement.Label));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, !bSuccess);
}

TSharedPtr<FJsonObject> HandleUpdateForestRecipe(FZorvekMCPBridgeToolContext& Context, const TSharedPtr<FJsonObject>& Arguments)
{
	const TCHAR* Tool = TEXT("pcg_update_forest_recipe");
	if (!Context.EditorPort)
	{
		return ZorvekMCPBridgeAssetTools::MakeEditorPortUnavailableResult(Tool);
	}
	IZorvekMCPBridgeEditorPort& Port = *Context.EditorPort;
	if (const TSharedPtr<FJsonObject> Refusal = CheckPcgForestLevelAccess(Port, Tool, TEXT("update_recipe"), Arguments))
	{
		return Refusal;
	}
	FString Name = ReadString(Arguments, TEXT("ForestActorNameOrLabel"), FString());
	Name = Name.TrimStartAndEnd().IsEmpty() ? FString(DefaultActorLabel) : Name;
	FPcgForestNumber Density, DensityScale, Looseness, SizeX, SizeY, SizeZ, SizeScale, Seed;
	FString Error = ReadPcgForestNumbers(Arguments, {{TEXT("Density"), &Density}, {TEXT("DensityScale"), &DensityScale}, {TEXT("Looseness"), &Looseness},
		{TEXT("SizeX"), &SizeX}, {TEXT("SizeY"), &SizeY}, {TEXT("SizeZ"), &SizeZ}, {TEXT("SizeScale"), &SizeScale}, {TEXT("Seed"), &Seed}});
	FForestActor Forest;
	FForestGraphNodes Nodes;
	Error = Error.IsEmpty() ? FindPcgForestForChange(Port, Name, Forest, Nodes) : Error;
	bool bAnyChange = false;
	for (const FPcgForestNumber* Number : {&Density, &DensityScale, &Looseness, &SizeX, &SizeY, &SizeZ, &SizeScale, &Seed})
	{
		bAnyChange |= Number->bPresent;
	}
	if (Error.IsEmpty() && !bAnyChange)
	{
		Error = TEXT("pcg_update_forest_recipe needs at least one of Density, DensityScale, Looseness, SizeX, SizeY, SizeZ, SizeScale or Seed.");
	}
	if (Error.IsEmpty() && ((DensityScale.bPresent && DensityScale.Value <= 0.0) || (SizeScale.bPresent && SizeScale.Value <= 0.0)))
	{
		Error = TEXT("DensityScale and SizeScale must be greater than 0.");
	}
	const FForestGraphSettings Previous = Nodes.IsComplete() ? ReadForestSettings(Port, Nodes) : FForestGraphSettings();
	FForestGraphSettings Settings = Previous;
	Settings.Density = (Density.bPresent ? Density.Value : Previous.Density) * (DensityScale.bPresent ? DensityScale.Value : 1.0);
	Settings.Looseness = Looseness.bPresent ? Looseness.Value : Previous.Looseness;
	const double Scale = SizeScale.bPresent ? SizeScale.Value : 1.0;
	const FZorvekMCPBridgeVector Size = {(SizeX.bPresent ? SizeX.Value : Forest.Size.X) * Scale, (SizeY.bPresent ? SizeY.Value : Forest.Size.Y) * Scale, (SizeZ.bPresent ? SizeZ.Value : Forest.Size.Z) * Scale};
	Error = Error.IsEmpty() ? CheckPcgForestDensity(Settings.Density) : Error;
	Error = Error.IsEmpty() ? CheckPcgForestLooseness(Settings.Looseness) : Error;
	for (const TPair<const TCHAR*, double>& Axis : {TPair<const TCHAR*, double>(TEXT("SizeX"), Size.X), TPair<const TCHAR*, double>(TEXT("SizeY"), Size.Y), TPair<const TCHAR*, double>(TEXT("SizeZ"), Size.Z)})
	{
		Error = Error.IsEmpty() ? CheckPcgForestSize(Axis.Key, Axis.Value) : Error;
	}
	Error = Error.IsEmpty() ? CheckPointEstimate(Size.X, Size.Y, Settings.Density) : Error;
	if (!Error.IsEmpty())
	{
		return MakePcgForestFailure(Tool, Error);
	}

	TArray<FString> Steps;
	if (Density.bPresent || DensityScale.bPresent || Looseness.bPresent)
	{
		if (!ApplyForestSettings(Port, Forest.Graph, Nodes, Settings, false, Error))
		{
			return MakePcgForestFailure(Tool, Error);
		}
		Port.GetAssetAuthoring().MarkPackageDirty(Forest.Graph);
		Steps.Add(TEXT("update_graph_settings"));
	}
	if (SizeX.bPresent || SizeY.bPresent || SizeZ.bPresent || SizeScale.bPresent)
	{
		SetVolumeSize(Port, Forest.Snapshot.Entry.Actor, Size);
		Steps.Add(TEXT("set_bounds"));
	}
	const int32 NewSeed = ZorvekMCPBridgeToolArguments::ReadInteger(Arguments, TEXT("Seed"), Forest.Seed);
	if (Seed.bPresent)
	{
		SetSeed(Port, Forest.Component, NewSeed, Error);
		Steps.Add(TEXT("set_seed"));
	}
	const int32 Removed = RemovePcgForestVisualOutputs(Port, Forest.Snapshot.Entry.Label);
	if (Removed > 0)
	{
		Steps.Add(TEXT("remove_stale_visual_output"));
	}
	FString GenerateError;
	const bool bRequested = RequestGeneration(Port, Forest.Component, GenerateError);
	Steps.Add(TEXT("regenerate"));

	const auto MakeState = [](const FForestGraphSettings& StateSettings, const FZorvekMCPBridgeVector& StateSize, int32 StateSeed)
	{
		TSharedPtr<FJsonObject> State = MakeSettingsJson(StateSettings);
		State->RemoveField(TEXT("meshes"));
		State->SetObjectField(TEXT("size"), MakeSizeJson(StateSize));
		State->SetNumberField(TEXT("seed"), StateSeed);
		State->SetNumberField(TEXT("estimated_point_count"), (double)EstimatePointCount(StateSize.X, StateSize.Y, StateSettings.Density));
		return State;
	};
	TSharedPtr<FJsonObject> Payload = MakeShared<FJsonObject>();
	Payload->SetBoolField(TEXT("success"), bRequested);
	Payload->SetBoolField(TEXT("updated"), true);
	Payload->SetBoolField(TEXT("generation_requested"), bRequested);
	Payload->SetArrayField(TEXT("steps"), ToPcgForestStrings(Steps));
	Payload->SetObjectField(TEXT("previous"), MakeState(Previous, Forest.Size, Forest.Seed));
	Payload->SetObjectField(TEXT("current"), MakeState(Settings, Size, NewSeed));
	Payload->SetNumberField(TEXT("removed_visual_output_count"), Removed);
	Payload->SetStringField(TEXT("graph_path"), Port.GetObjects().GetIdentity(Forest.Graph).ObjectPath);
	Payload->SetObjectField(TEXT("actor"), ReadPcgForestActorJson(Port, Forest.Snapshot.Entry.Actor));
	if (!GenerateError.IsEmpty())
	{
		Payload->SetStringField(TEXT("generate_error"), GenerateError);
	}
	Payload->SetStringField(TEXT("note"), TEXT("The same volume regenerates in place: no actor is added. Density and looseness live in the graph asset, so every forest using that graph changes with it."));
	Payload->SetArrayField(TEXT("next_steps"), MakePcgForestNextSteps(Forest.Snapshot.Entry.Label));
	return ZorvekMCPBridgeTools::MakeStructuredToolResult(Payload, !bRequested);
}
}
