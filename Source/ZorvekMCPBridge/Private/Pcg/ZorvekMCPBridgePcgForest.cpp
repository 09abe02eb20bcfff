#include "Pcg/ZorvekMCPBridgePcgForest.h"

#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeEditorPort.h"
#include "Pcg/ZorvekMCPBridgePcgGraphAuthoring.h"
#include "Pcg/ZorvekMCPBridgePcgReflection.h"
#include "World/ZorvekMCPBridgeActorReadback.h"

const TCHAR* const ZorvekMCPBridgePcgForest::DefaultGraphPath = TEXT("/Game/ZorvekMCP/PCG/PCG_ZorvekForest");
const TCHAR* const ZorvekMCPBridgePcgForest::DefaultActorLabel = TEXT("ZorvekPCGForest");
const TCHAR* const ZorvekMCPBridgePcgForest::VolumeClassPath = TEXT("/Script/PCG.PCGVolume");
const TCHAR* const ZorvekMCPBridgePcgForest::ForestTag = TEXT("ZorvekPCGForest");
const TCHAR* const ZorvekMCPBridgePcgForest::VisualOutputTag = TEXT("ZorvekPCGVisualOutput");

namespace
{
	namespace PcgForestAuthoring = ZorvekMCPBridgePcgGraphAuthoring;

	FString PcgForestNumberText(double Value)
	{
		return FString::Printf(TEXT("%f"), Value);
	}

	double PcgForestReadNumber(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, const TCHAR* PropertyName, double Default)
	{
		const FString Text = PcgForestAuthoring::GetPropertyText(Port, Object, PropertyName);
		return Text.IsEmpty() ? Default : FCString::Atod(*Text);
	}

	// A UFunction of one object parameter (SetGraph, SetStaticMesh), called by reflection.
	bool PcgForestCallWithObject(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Target, const TCHAR* TargetWord, const TCHAR* FunctionName, FZorvekMCPBridgeObjectHandle Argument, FString& OutError)
	{
		IZorvekMCPBridgeFunctions& Functions = Port.GetFunctions();
		const FString ClassPath = Port.GetObjects().GetClassInfo(Target).Path;
		FZorvekMCPBridgeFunctionInfo Function;
		TUniquePtr<IZorvekMCPBridgeParameterBlock> Block;
		if (Target.IsValid() && Functions.FindFunction(ClassPath, FunctionName, TArray<FString>(), Function))
		{
			Block = Functions.CreateParameterBlock(ClassPath, Function.Name);
		}
		if (!Block.IsValid() || Function.Parameters.Num() < 1)
		{
			OutError = FString::Printf(TEXT("%s did not expose %s."), TargetWord, FunctionName);
			return false;
		}
		if (!Block->SetObjectValue(0, Argument))
		{
			OutError = FString::Printf(TEXT("%s refused the argument of %s."), TargetWord, FunctionName);
			return false;
		}
		Functions.CallFunction(Target, *Block);
		return true;
	}

	FZorvekMCPBridgeObjectHandle PcgForestObjectProperty(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, const TCHAR* PropertyName)
	{
		const FZorvekMCPBridgePropertyCursor Property = Object.IsValid() ? Port.GetReflection().FindProperty(Object, PropertyName) : FZorvekMCPBridgePropertyCursor();
		return Property.IsValid() ? Property.GetReferencedObject() : FZorvekMCPBridgeObjectHandle();
	}

	// The component's graph: GraphInstance (the instance the assigned graph is wrapped in) ->
	// Graph.
	FZorvekMCPBridgeObjectHandle PcgForestComponentGraph(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Component)
	{
		return PcgForestObjectProperty(Port, PcgForestObjectProperty(Port, Component, TEXT("GraphInstance")), TEXT("Graph"));
	}

	// TaggedData[i].Data.Data in 5.7 (a wrapper struct), TaggedData[i].Data before.
	FZorvekMCPBridgeObjectHandle PcgForestTaggedDataObject(const FZorvekMCPBridgePropertyCursor& Entry)
	{
		const FZorvekMCPBridgePropertyCursor Data = Entry.FindStructField(TEXT("Data"));
		if (!Data.IsValid())
		{
			return FZorvekMCPBridgeObjectHandle();
		}
		if (Data.GetKind() == EZorvekMCPBridgePropertyKind::Struct)
		{
			const FZorvekMCPBridgePropertyCursor Inner = Data.FindStructField(TEXT("Data"));
			return Inner.IsValid() ? Inner.GetReferencedObject() : FZorvekMCPBridgeObjectHandle();
		}
		return Data.GetReferencedObject();
	}
}

TArray<TPair<FString, int32>> ZorvekMCPBridgePcgForest::GetDefaultMeshes()
{
	return {{TEXT("/Engine/BasicShapes/Cone.Cone"), 3}, {TEXT("/Engine/BasicShapes/Cylinder.Cylinder"), 1}};
}

FString ZorvekMCPBridgePcgForest::MakeForestOutputTag(const FString& ForestLabel)
{
	return FString::Printf(TEXT("ZorvekPCGForestOutput_%s"), *ForestLabel);
}

int64 ZorvekMCPBridgePcgForest::EstimatePointCount(double SizeX, double SizeY, double Density)
{
	// Truncation is the floor here: every factor is positive.
	return (int64)((SizeX / 100.0) * (SizeY / 100.0) * Density);
}

FString ZorvekMCPBridgePcgForest::CheckPointEstimate(double SizeX, double SizeY, double Density)
{
	const int64 Estimate = EstimatePointCount(SizeX, SizeY, Density);
	if (Estimate > MaxEstimatedPoints)
	{
		return FString::Printf(TEXT("The forest would generate about %lld points (%.0f x %.0f cm at %g per square metre); at most %lld are allowed per forest. Use a smaller size or a lower density."),
			(long long)Estimate, SizeX, SizeY, Density, (long long)MaxEstimatedPoints);
	}
	return FString();
}

ZorvekMCPBridgePcgForest::FForestGraphNodes ZorvekMCPBridgePcgForest::FindForestNodes(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Graph)
{
	FForestGraphNodes Nodes;
	FZorvekMCPBridgePcgGraphSnapshot Snapshot;
	if (!PcgForestAuthoring::ReadGraph(Port, Graph, Snapshot))
	{
		return Nodes;
	}
	const int32 Sampler = Snapshot.FindNodeBySettingsClass(Port, PcgForestAuthoring::SurfaceSamplerClassPath);
	const int32 Filter = Snapshot.FindNodeBySettingsClass(Port, PcgForestAuthoring::DensityFilterClassPath);
	const int32 Spawner = Snapshot.FindNodeBySettingsClass(Port, PcgForestAuthoring::StaticMeshSpawnerClassPath);
	Nodes.Sampler = Sampler != INDEX_NONE ? Snapshot.Nodes[Sampler].Settings : FZorvekMCPBridgeObjectHandle();
	Nodes.Filter = Filter != INDEX_NONE ? Snapshot.Nodes[Filter].Settings : FZorvekMCPBridgeObjectHandle();
	Nodes.Spawner = Spawner != INDEX_NONE ? Snapshot.Nodes[Spawner].Settings : FZorvekMCPBridgeObjectHandle();
	return Nodes;
}

FString ZorvekMCPBridgePcgForest::ToGraphObjectPath(const FString& GraphPath)
{
	if (GraphPath.Contains(TEXT(".")))
	{
		return GraphPath;
	}
	int32 Slash = INDEX_NONE;
	GraphPath.FindLastChar(TEXT('/'), Slash);
	return FString::Printf(TEXT("%s.%s"), *GraphPath, *GraphPath.Mid(Slash + 1));
}

FZorvekMCPBridgeObjectHandle ZorvekMCPBridgePcgForest::LoadGraph(IZorvekMCPBridgeEditorPort& Port, const FString& GraphPath)
{
	const FZorvekMCPBridgeObjectHandle Graph = Port.GetObjects().LoadObject(ToGraphObjectPath(GraphPath));
	return Port.GetObjects().IsA(Graph, PcgForestAuthoring::GraphClassPath) ? Graph : FZorvekMCPBridgeObjectHandle();
}

bool ZorvekMCPBridgePcgForest::BuildForestGraph(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Graph, const FForestGraphSettings& Settings, TArray<FString>& OutSteps, FString& OutError)
{
	const FZorvekMCPBridgeObjectHandle InputNode = PcgForestAuthoring::GetInputNode(Port, Graph);
	const FZorvekMCPBridgeObjectHandle OutputNode = PcgForestAuthoring::GetOutputNode(Port, Graph);
	FZorvekMCPBridgePcgGraphSnapshot Snapshot;
	if (!InputNode.IsValid() || !OutputNode.IsValid() || !PcgForestAuthoring::ReadGraph(Port, Graph, Snapshot))
	{
		OutError = TEXT("PCG graph has no input or output node.");
		return false;
	}
	// The input node's pins depend on its settings: take "Input" when it has one, else its first.
	const int32 InputIndex = Snapshot.FindRole(TEXT("input"));
	const TArray<FString> InputPins = InputIndex != INDEX_NONE ? Snapshot.Nodes[InputIndex].OutputPins : TArray<FString>();
	if (InputPins.IsEmpty())
	{
		OutError = TEXT("PCG graph input node has no output pin.");
		return false;
	}
	const FString InputPin = InputPins.ContainsByPredicate([](const FString& Label) { return Label.Equals(TEXT("Input"), ESearchCase::IgnoreCase); }) ? FString(TEXT("Input")) : InputPins[0];

	FZorvekMCPBridgeObjectHandle SamplerNode, SamplerSettings, FilterNode, FilterSettings, SpawnerNode, SpawnerSettings;
	if (!PcgForestAuthoring::AddNodeOfType(Port, Graph, PcgForestAuthoring::SurfaceSamplerClassPath, SamplerNode, SamplerSettings, OutError))
	{
		return false;
	}
	OutSteps.Add(TEXT("add_surface_sampler"));
	if (!PcgForestAuthoring::AddNodeOfType(Port, Graph, PcgForestAuthoring::DensityFilterClassPath, FilterNode, FilterSettings, OutError))
	{
		return false;
	}
	OutSteps.Add(TEXT("add_density_filter"));
	if (!PcgForestAuthoring::AddNodeOfType(Port, Graph, PcgForestAuthoring::StaticMeshSpawnerClassPath, SpawnerNode, SpawnerSettings, OutError))
	{
		return false;
	}
	OutSteps.Add(TEXT("add_static_mesh_spawner"));
	FForestGraphNodes Nodes;
	Nodes.Sampler = SamplerSettings;
	Nodes.Filter = FilterSettings;
	Nodes.Spawner = SpawnerSettings;
	if (!ApplyForestSettings(Port, Graph, Nodes, Settings, true, OutError))
	{
		return false;
	}
	OutSteps.Add(TEXT("set_node_settings"));
	struct FPcgForestEdge
	{
		FZorvekMCPBridgeObjectHandle From;
		FString FromPin;
		FZorvekMCPBridgeObjectHandle To;
		FString ToPin;
		const TCHAR* Step;
	};
	const FPcgForestEdge Edges[] = {
		{InputNode, InputPin, SamplerNode, TEXT("Surface"), TEXT("connect_input_to_sampler")},
		{SamplerNode, TEXT("Out"), FilterNode, TEXT("In"), TEXT("connect_sampler_to_filter")},
		{FilterNode, TEXT("Out"), SpawnerNode, TEXT("In"), TEXT("connect_filter_to_spawner")},
		{SpawnerNode, TEXT("Out"), OutputNode, TEXT("Out"), TEXT("connect_spawner_to_output")},
	};
	for (const FPcgForestEdge& Edge : Edges)
	{
		if (!PcgForestAuthoring::AddEdge(Port, Graph, Edge.From, Edge.FromPin, Edge.To, Edge.ToPin, OutError))
		{
			return false;
		}
		OutSteps.Add(Edge.Step);
	}
	if (!PcgForestAuthoring::NotifyEditor(Port, Graph, OutError))
	{
		return false;
	}
	OutSteps.Add(TEXT("notify_editor"));
	return true;
}

bool ZorvekMCPBridgePcgForest::ApplyForestSettings(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Graph, const FForestGraphNodes& Nodes, const FForestGraphSettings& Settings, bool bSetMeshes, FString& OutError)
{
	if (!PcgForestAuthoring::SetSettingsProperty(Port, Nodes.Sampler, TEXT("PointsPerSquaredMeter"), PcgForestNumberText(Settings.Density), OutError)
		|| !PcgForestAuthoring::SetSettingsProperty(Port, Nodes.Sampler, TEXT("Looseness"), PcgForestNumberText(Settings.Looseness), OutError))
	{
		return false;
	}
	if (bSetMeshes && !PcgForestAuthoring::SetWeightedMeshEntries(Port, Nodes.Spawner, Settings.Meshes, OutError))
	{
		return false;
	}
	// Edits by reflection send no notifications of their own: the settings refresh what they cache
	// from their properties, then the graph tells the editor.
	Port.GetAssetAuthoring().PostEditChange(Nodes.Sampler);
	if (bSetMeshes)
	{
		Port.GetAssetAuthoring().PostEditChange(Nodes.Spawner);
	}
	return PcgForestAuthoring::NotifyEditor(Port, Graph, OutError);
}

ZorvekMCPBridgePcgForest::FForestGraphSettings ZorvekMCPBridgePcgForest::ReadForestSettings(IZorvekMCPBridgeEditorPort& Port, const FForestGraphNodes& Nodes)
{
	FForestGraphSettings Settings;
	Settings.Density = PcgForestReadNumber(Port, Nodes.Sampler, TEXT("PointsPerSquaredMeter"), DefaultDensity);
	Settings.Looseness = PcgForestReadNumber(Port, Nodes.Sampler, TEXT("Looseness"), DefaultLooseness);
	return Settings;
}

ZorvekMCPBridgePcgForest::FForestActor ZorvekMCPBridgePcgForest::FindForestActor(IZorvekMCPBridgeEditorPort& Port, const FString& ActorNameOrLabel)
{
	FForestActor Forest;
	IZorvekMCPBridgeWorld& World = Port.GetWorld();
	FZorvekMCPBridgeActorEntry Entry;
	if (!ZorvekMCPBridgeActorReadback::FindActor(World, ActorNameOrLabel, Entry) || !World.ReadActor(Entry.Actor, Forest.Snapshot))
	{
		return Forest;
	}
	Forest.bFound = true;
	Forest.Component = ZorvekMCPBridgePcgReflection::FindPcgComponent(Port, Forest.Snapshot);
	Forest.Graph = PcgForestComponentGraph(Port, Forest.Component);
	const FZorvekMCPBridgeVector& Scale = Forest.Snapshot.RootTransform.Scale;
	Forest.Size = {Scale.X * VolumeUnitSize, Scale.Y * VolumeUnitSize, Scale.Z * VolumeUnitSize};
	const FString SeedText = Forest.Component.IsValid() ? PcgForestAuthoring::GetPropertyText(Port, Forest.Component, TEXT("Seed")) : FString();
	Forest.Seed = SeedText.IsEmpty() ? DefaultSeed : FCString::Atoi(*SeedText);
	return Forest;
}

bool ZorvekMCPBridgePcgForest::SetSeed(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Component, int32 Seed, FString& OutError)
{
	return PcgForestAuthoring::SetSettingsProperty(Port, Component, TEXT("Seed"), FString::Printf(TEXT("%d"), Seed), OutError);
}

void ZorvekMCPBridgePcgForest::SetVolumeSize(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Actor, const FZorvekMCPBridgeVector& Size)
{
	Port.GetWorld().SetActorScale3D(Actor, {Size.X / VolumeUnitSize, Size.Y / VolumeUnitSize, Size.Z / VolumeUnitSize});
}

FZorvekMCPBridgeObjectHandle ZorvekMCPBridgePcgForest::PlaceForestVolume(IZorvekMCPBridgeEditorPort& Port, const FString& Label, const FZorvekMCPBridgeVector& Location, const FZorvekMCPBridgeVector& Size, int32 Seed, FZorvekMCPBridgeObjectHandle Graph, FString& OutError)
{
	IZorvekMCPBridgeWorld& World = Port.GetWorld();
	const FZorvekMCPBridgeObjectHandle Actor = World.SpawnActorFromClass(VolumeClassPath, Location, FZorvekMCPBridgeRotator());
	if (!Actor.IsValid())
	{
		OutError = FString::Printf(TEXT("Could not spawn actor of class '%s'."), VolumeClassPath);
		return Actor;
	}
	SetVolumeSize(Port, Actor, Size);
	World.SetActorLabel(Actor, Label);
	World.AddActorTags(Actor, {FName(ZorvekMCPBridgeActorReadback::BridgeTag), FName(ZorvekMCPBridgeActorReadback::ReproTag), FName(ZorvekMCPBridgeActorReadback::VisualPcgTag), FName(ForestTag)});
	FZorvekMCPBridgeActorSnapshot Snapshot;
	const FZorvekMCPBridgeObjectHandle Component = World.ReadActor(Actor, Snapshot) ? ZorvekMCPBridgePcgReflection::FindPcgComponent(Port, Snapshot) : FZorvekMCPBridgeObjectHandle();
	// The bridge generates when asked, so a graph assigned here does not start a run of its own.
	const bool bReady = Component.IsValid() && SetSeed(Port, Component, Seed, OutError)
		&& PcgForestAuthoring::SetSettingsProperty(Port, Component, TEXT("GenerationTrigger"), TEXT("GenerateOnDemand"), OutError)
		&& PcgForestCallWithObject(Port, Component, TEXT("PCG component"), TEXT("SetGraph"), Graph, OutError);
	if (!bReady || PcgForestComponentGraph(Port, Component) != Graph)
	{
		if (OutError.IsEmpty())
		{
			OutError = Component.IsValid() ? TEXT("PCG component did not take the graph.") : TEXT("Forest actor has no PCG component.");
		}
		World.DestroyActors({Actor});
		return FZorvekMCPBridgeObjectHandle();
	}
	return Actor;
}

bool ZorvekMCPBridgePcgForest::RequestGeneration(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Component, FString& OutError)
{
	return ZorvekMCPBridgePcgReflection::CallWithFlag(Port, Component, TEXT("PCG component"), TEXT("GenerateLocal"), true, OutError);
}

TArray<FZorvekMCPBridgeObjectHandle> ZorvekMCPBridgePcgForest::FindVisualOutputs(IZorvekMCPBridgeEditorPort& Port, const FString& ForestLabel)
{
	TArray<FZorvekMCPBridgeObjectHandle> Actors;
	const FName VisualTag(VisualOutputTag);
	const FName OutputTag(*MakeForestOutputTag(ForestLabel));
	for (const FZorvekMCPBridgeActorEntry& Actor : Port.GetWorld().GetAllLevelActors())
	{
		if (Actor.Tags.Contains(VisualTag) && Actor.Tags.Contains(OutputTag))
		{
			Actors.Add(Actor.Actor);
		}
	}
	return Actors;
}

TArray<FZorvekMCPBridgeVector> ZorvekMCPBridgePcgForest::ReadGeneratedPoints(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Component, int32 MaxPoints)
{
	TArray<FZorvekMCPBridgeVector> Points;
	const FZorvekMCPBridgePropertyCursor Output = Port.GetReflection().FindProperty(Component, TEXT("GeneratedGraphOutput"));
	const FZorvekMCPBridgePropertyCursor TaggedData = Output.IsValid() ? Output.FindStructField(TEXT("TaggedData")) : FZorvekMCPBridgePropertyCursor();
	const int32 ItemCount = TaggedData.IsValid() && TaggedData.GetKind() == EZorvekMCPBridgePropertyKind::Array ? TaggedData.GetArrayNum() : 0;
	IZorvekMCPBridgeFunctions& Functions = Port.GetFunctions();
	for (int32 Item = 0; Item < ItemCount && Points.Num() < MaxPoints; ++Item)
	{
		const FZorvekMCPBridgeObjectHandle Data = PcgForestTaggedDataObject(TaggedData.GetArrayElement(Item));
		int64 Count = 0;
		if (!Data.IsValid() || !ZorvekMCPBridgePcgReflection::CallIntegerGetter(Port, Data, TEXT("GetNumPoints"), Count))
		{
			continue;
		}
		// Point storage is not reflected: each point's transform comes from GetTransform(i).
		const FString ClassPath = Port.GetObjects().GetClassInfo(Data).Path;
		FZorvekMCPBridgeFunctionInfo Function;
		if (!Functions.FindFunction(ClassPath, TEXT("GetTransform"), TArray<FString>(), Function) || Function.Parameters.Num() < 2)
		{
			continue;
		}
		for (int64 Index = 0; Index < Count && Points.Num() < MaxPoints; ++Index)
		{
			TUniquePtr<IZorvekMCPBridgeParameterBlock> Block = Functions.CreateParameterBlock(ClassPath, Function.Name);
			if (!Block.IsValid())
			{
				break;
			}
			Block->ImportJsonValue(0, MakeShared<FJsonValueNumber>((double)Index));
			Functions.CallFunction(Data, *Block);
			const TSharedPtr<FJsonValue> Result = Block->ExportJsonValue(1);
			const TSharedPtr<FJsonObject>* Transform = nullptr;
			const TSharedPtr<FJsonObject>* Translation = nullptr;
			if (Result.IsValid() && Result->TryGetObject(Transform) && (*Transform)->TryGetObjectField(TEXT("Translation"), Translation))
			{
				Points.Add({(*Translation)->GetNumberField(TEXT("X")), (*Translation)->GetNumberField(TEXT("Y")), (*Translation)->GetNumberField(TEXT("Z"))});
			}
		}
	}
	return Points;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgForest::MakeSettingsJson(const FForestGraphSettings& Settings)
{
	TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
	Json->SetNumberField(TEXT("density"), Settings.Density);
	Json->SetNumberField(TEXT("looseness"), Settings.Looseness);
	TArray<TSharedPtr<FJsonValue>> Meshes;
	for (const TPair<FString, int32>& Mesh : Settings.Meshes)
	{
		TSharedPtr<FJsonObject> Entry = MakeShared<FJsonObject>();
		Entry->SetStringField(TEXT("mesh"), Mesh.Key);
		Entry->SetNumberField(TEXT("weight"), Mesh.Value);
		Meshes.Add(MakeShared<FJsonValueObject>(Entry));
	}
	Json->SetArrayField(TEXT("meshes"), Meshes);
	return Json;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgePcgForest::MakeSizeJson(const FZorvekMCPBridgeVector& Size)
{
	TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
	Json->SetNumberField(TEXT("x"), Size.X);
	Json->SetNumberField(TEXT("y"), Size.Y);
	Json->SetNumberField(TEXT("z"), Size.Z);
	return Json;
}
