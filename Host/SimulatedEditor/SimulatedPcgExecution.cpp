// Running a PCG graph in the simulated editor: the nodes are evaluated along their edges from the
// graph's input node; what reaches the output node's "Out" pin becomes GeneratedGraphOutput, and
// the spawners leave their managed resources on the component.
#include "SimulatedPcg.h"

#include "SimulatedEditor.h"
#include "SimulatedWorld.h"

#include <cmath>
#include <unordered_set>

namespace
{
	const TCHAR* const SimPcgExecPointArrayDataClassPath = TEXT("/Script/PCG.PCGPointArrayData");
	const TCHAR* const SimPcgExecManagedActorsClassPath = TEXT("/Script/PCG.PCGManagedActors");
	const TCHAR* const SimPcgExecManagedIsmClassPath = TEXT("/Script/PCG.PCGManagedISMComponent");
	const TCHAR* const SimPcgExecSurfaceSamplerClassPath = TEXT("/Script/PCG.PCGSurfaceSamplerSettings");
	const TCHAR* const SimPcgExecDensityFilterClassPath = TEXT("/Script/PCG.PCGDensityFilterSettings");
	const TCHAR* const SimPcgExecStaticMeshSpawnerClassPath = TEXT("/Script/PCG.PCGStaticMeshSpawnerSettings");
	const TCHAR* const SimPcgExecSpawnActorClassPath = TEXT("/Script/PCG.PCGSpawnActorSettings");

	// The sampler stops at this many cells per axis, so a runaway density cannot exhaust memory
	// (the bridge refuses such densities long before).
	constexpr int32 SimPcgMaxCellsPerAxis = 1000;

	// A small deterministic generator for the sampler's jitter and the mesh choice.
	uint32 SimPcgExecHash(uint32 Value)
	{
		Value ^= Value >> 16;
		Value *= 0x7feb352du;
		Value ^= Value >> 15;
		Value *= 0x846ca68bu;
		Value ^= Value >> 16;
		return Value;
	}

	double SimPcgExecUnit(uint32 Seed, uint32 Index, uint32 Axis)
	{
		return (double)(SimPcgExecHash(Seed * 73856093u ^ Index * 19349663u ^ Axis * 83492791u) % 100000u) / 100000.0;
	}

	// One piece of data flowing along an edge: the component's actor as spatial data (its bounds),
	// or points.
	struct FSimPcgData
	{
		bool bSpatial = false;
		FSimulatedBox Bounds;
		std::vector<FSimulatedPcgPoint> Points;
	};

	// A node's output per pin label (lower case).
	using FSimPcgNodeOutput = TMap<FString, std::vector<FSimPcgData>>;

	FSimulatedValue* SimPcgExecField(FSimulatedValue& StructValue, const FSimulatedType* Struct, const TCHAR* FieldName)
	{
		const int32 Index = Struct ? Struct->FindPropertyIndex(FieldName) : INDEX_NONE;
		return Index == INDEX_NONE || Index >= (int32)StructValue.Items.size() ? nullptr : &StructValue.Items[(size_t)Index];
	}

	FString SimPcgPinLabel(const FSimulatedObject& Pin)
	{
		const int32 Index = Pin.Class->FindPropertyIndex(TEXT("Properties"));
		if (Index == INDEX_NONE)
		{
			return FString();
		}
		FSimulatedValue Properties = Pin.Values[(size_t)Index];
		const FSimulatedValue* Label = SimPcgExecField(Properties, Pin.Class->AllProperties[(size_t)Index]->TypeObject, TEXT("Label"));
		return Label ? Label->Text : FString();
	}

	class FSimPcgGraphRun
	{
	public:
		FSimPcgGraphRun(FSimulatedWorld& InWorld, FSimulatedObject& InComponent, FSimulatedActor& InOwner, FSimulatedObject& InGraph)
			: World(InWorld)
			, Editor(InWorld.GetEditor())
			, Component(InComponent)
			, Owner(InOwner)
			, Graph(InGraph)
		{
			const FSimulatedValue* Seed = World.FindValue(Component, TEXT("Seed"));
			ComponentSeed = Seed ? (uint32)Seed->Integer : 42u;
		}

		// Every node runs (spawners at the end of a branch too); then the output node's inputs.
		void Run()
		{
			if (const FSimulatedValue* Nodes = World.FindValue(Graph, TEXT("Nodes")))
			{
				for (const FSimulatedValue& Node : Nodes->Items)
				{
					if (Node.Object)
					{
						Evaluate(*Node.Object);
					}
				}
			}
			const FSimulatedValue* OutputNode = World.FindValue(Graph, TEXT("OutputNode"));
			if (OutputNode && OutputNode->Object)
			{
				for (FSimPcgData& Data : GatherInputs(*OutputNode->Object, TEXT("Out")))
				{
					if (!Data.bSpatial)
					{
						Output.push_back(std::move(Data.Points));
					}
				}
			}
		}

		std::vector<std::vector<FSimulatedPcgPoint>> Output;
		// Points per static mesh path, and the actors Spawn Actor spawned.
		TMap<FString, int32> MeshInstances;
		std::vector<FSimulatedActor*> Spawned;

	private:
		std::vector<FSimPcgData> GatherInputs(const FSimulatedObject& Node, const FString& PinLabel)
		{
			std::vector<FSimPcgData> Inputs;
			const FSimulatedValue* Pins = World.FindValue(Node, TEXT("InputPins"));
			for (const FSimulatedValue& PinValue : Pins ? Pins->Items : std::vector<FSimulatedValue>())
			{
				if (!PinValue.Object || !SimPcgPinLabel(*PinValue.Object).Equals(PinLabel, ESearchCase::IgnoreCase))
				{
					continue;
				}
				const FSimulatedValue* Edges = World.FindValue(*PinValue.Object, TEXT("Edges"));
				for (const FSimulatedValue& EdgeValue : Edges ? Edges->Items : std::vector<FSimulatedValue>())
				{
					const FSimulatedValue* Upstream = EdgeValue.Object ? World.FindValue(*EdgeValue.Object, TEXT("InputPin")) : nullptr;
					const FSimulatedValue* UpstreamNode = Upstream && Upstream->Object ? World.FindValue(*Upstream->Object, TEXT("Node")) : nullptr;
					if (!UpstreamNode || !UpstreamNode->Object || Upstream->Object == PinValue.Object)
					{
						continue;
					}
					const FSimPcgNodeOutput& Produced = Evaluate(*UpstreamNode->Object);
					if (const std::vector<FSimPcgData>* Data = Produced.Find(SimPcgPinLabel(*Upstream->Object).ToLower()))
					{
						Inputs.insert(Inputs.end(), Data->begin(), Data->end());
					}
				}
			}
			return Inputs;
		}

		const FSimPcgNodeOutput& Evaluate(FSimulatedObject& Node)
		{
			if (const FSimPcgNodeOutput* Done = Results.Find(&Node))
			{
				return *Done;
			}
			// A cycle produces nothing (the engine refuses to run it).
			if (!Visiting.insert(&Node).second)
			{
				static const FSimPcgNodeOutput Empty;
				return Empty;
			}
			FSimPcgNodeOutput Produced;
			const FSimulatedValue* InputNode = World.FindValue(Graph, TEXT("InputNode"));
			const FSimulatedValue* SettingsValue = World.FindValue(Node, TEXT("SettingsInterface"));
			FSimulatedObject* Settings = SettingsValue ? SettingsValue->Object : nullptr;
			const FSimulatedValue* Enabled = Settings ? World.FindValue(*Settings, TEXT("bEnabled")) : nullptr;
			if (InputNode && InputNode->Object == &Node)
			{
				FSimPcgData Actor;
				Actor.bSpatial = true;
				Actor.Bounds = World.GetActorBounds(Owner);
				Produced.FindOrAdd(TEXT("input")).push_back(Actor);
			}
			else if (Settings && Enabled && !Enabled->Bool)
			{
				// A disabled node passes its first input through.
				Produced.Add(TEXT("out"), GatherInputs(Node, TEXT("In")));
			}
			else if (IsA(Settings, SimPcgExecSurfaceSamplerClassPath))
			{
				Produced.Add(TEXT("out"), Sample(*Settings, GatherInputs(Node, TEXT("Surface"))));
			}
			else if (IsA(Settings, SimPcgExecDensityFilterClassPath))
			{
				Produced.Add(TEXT("out"), FilterByDensity(*Settings, GatherInputs(Node, TEXT("In"))));
			}
			else if (IsA(Settings, SimPcgExecStaticMeshSpawnerClassPath))
			{
				std::vector<FSimPcgData> Inputs = GatherInputs(Node, TEXT("In"));
				SpawnMeshes(*Settings, Inputs);
				Produced.Add(TEXT("out"), Inputs);
			}
			else if (IsA(Settings, SimPcgExecSpawnActorClassPath))
			{
				std::vector<FSimPcgData> Inputs = GatherInputs(Node, TEXT("In"));
				SpawnActors(*Settings, Inputs);
				Produced.Add(TEXT("out"), Inputs);
			}
			Visiting.erase(&Node);
			return Results.Add(&Node, MoveTemp(Produced));
		}

		bool IsA(const FSimulatedObject* Object, const TCHAR* ClassPath) const
		{
			const FSimulatedType* Class = Editor.FindTypeByPath(ClassPath);
			return Object && Object->Class && Class && Object->Class->IsChildOf(Class);
		}

		double ReadReal(const FSimulatedObject& Object, const TCHAR* Name, double Default) const
		{
			const FSimulatedValue* Value = World.FindValue(Object, Name);
			return Value ? Value->Real : Default;
		}

		// The node seed mixed with the component's, as UPCGSettings::GetSeed does with its source.
		uint32 GetNodeSeed(const FSimulatedObject& Settings) const
		{
			const FSimulatedValue* Seed = World.FindValue(Settings, TEXT("Seed"));
			return SimPcgExecHash((Seed ? (uint32)Seed->Integer : 42u) * 196314165u + ComponentSeed * 907633515u);
		}

		// One point per cell of 1 / PointsPerSquaredMeter square metres over the top of each spatial
		// input's bounds, jittered inside its cell by Looseness; density 1.
		std::vector<FSimPcgData> Sample(const FSimulatedObject& Settings, const std::vector<FSimPcgData>& Inputs)
		{
			std::vector<FSimPcgData> Result;
			const double PointsPerSquaredMeter = ReadReal(Settings, TEXT("PointsPerSquaredMeter"), 0.1);
			const double Looseness = ReadReal(Settings, TEXT("Looseness"), 1.0);
			const uint32 Seed = GetNodeSeed(Settings);
			for (const FSimPcgData& Input : Inputs)
			{
				FSimPcgData Points;
				const FSimulatedBox& Bounds = Input.bSpatial ? Input.Bounds : FSimulatedBox();
				if (Bounds.bIsValid && PointsPerSquaredMeter > 0.0)
				{
					const double Cell = 100.0 / std::sqrt(PointsPerSquaredMeter);
					// Bounds come through rotations and scales: a hair of slack keeps exact fits whole.
					const int32 CellsX = (int32)FMath::Min(std::floor((Bounds.Max.X - Bounds.Min.X) / Cell + 1e-6), (double)SimPcgMaxCellsPerAxis);
					const int32 CellsY = (int32)FMath::Min(std::floor((Bounds.Max.Y - Bounds.Min.Y) / Cell + 1e-6), (double)SimPcgMaxCellsPerAxis);
					Points.Points.reserve((size_t)FMath::Max(CellsX, 0) * (size_t)FMath::Max(CellsY, 0));
					for (int32 Y = 0; Y < CellsY; ++Y)
					{
						for (int32 X = 0; X < CellsX; ++X)
						{
							const uint32 Index = (uint32)(Y * CellsX + X);
							const double OffsetX = (SimPcgExecUnit(Seed, Index, 0) - 0.5) * Looseness;
							const double OffsetY = (SimPcgExecUnit(Seed, Index, 1) - 0.5) * Looseness;
							FSimulatedPcgPoint Point;
							Point.Location = {Bounds.Min.X + (X + 0.5 + OffsetX) * Cell, Bounds.Min.Y + (Y + 0.5 + OffsetY) * Cell, Bounds.Max.Z};
							Point.Seed = SimPcgExecHash(Seed ^ (Index * 2654435761u));
							Points.Points.push_back(Point);
						}
					}
				}
				Result.push_back(std::move(Points));
			}
			return Result;
		}

		std::vector<FSimPcgData> FilterByDensity(const FSimulatedObject& Settings, const std::vector<FSimPcgData>& Inputs) const
		{
			const double LowerBound = ReadReal(Settings, TEXT("LowerBound"), 0.5);
			const double UpperBound = ReadReal(Settings, TEXT("UpperBound"), 1.0);
			const FSimulatedValue* Invert = World.FindValue(Settings, TEXT("bInvertFilter"));
			std::vector<FSimPcgData> Result;
			for (const FSimPcgData& Input : Inputs)
			{
				FSimPcgData Kept;
				for (const FSimulatedPcgPoint& Point : Input.Points)
				{
					const bool bInside = Point.Density >= LowerBound && Point.Density <= UpperBound;
					if (bInside != (Invert && Invert->Bool))
					{
						Kept.Points.push_back(Point);
					}
				}
				Result.push_back(std::move(Kept));
			}
			return Result;
		}

		// The weighted selector picks a mesh per point from its seed; a spawner without a selector
		// parameters object or without entries spawns nothing.
		void SpawnMeshes(const FSimulatedObject& Settings, const std::vector<FSimPcgData>& Inputs)
		{
			const FSimulatedValue* Selector = World.FindValue(Settings, TEXT("MeshSelectorParameters"));
			const int32 EntriesIndex = Selector && Selector->Object ? Selector->Object->Class->FindPropertyIndex(TEXT("MeshEntries")) : INDEX_NONE;
			if (EntriesIndex == INDEX_NONE)
			{
				return;
			}
			const FSimulatedProperty& EntriesProperty = *Selector->Object->Class->AllProperties[(size_t)EntriesIndex];
			const FSimulatedType* EntryStruct = EntriesProperty.Inner ? EntriesProperty.Inner->TypeObject : nullptr;
			const FSimulatedType* DescriptorStruct = nullptr;
			if (EntryStruct)
			{
				const int32 DescriptorIndex = EntryStruct->FindPropertyIndex(TEXT("Descriptor"));
				DescriptorStruct = DescriptorIndex == INDEX_NONE ? nullptr : EntryStruct->AllProperties[(size_t)DescriptorIndex]->TypeObject;
			}
			TArray<TPair<FString, int64>> Entries;
			int64 TotalWeight = 0;
			for (FSimulatedValue Entry : Selector->Object->Values[(size_t)EntriesIndex].Items)
			{
				FSimulatedValue* Descriptor = SimPcgExecField(Entry, EntryStruct, TEXT("Descriptor"));
				FSimulatedValue* Mesh = Descriptor ? SimPcgExecField(*Descriptor, DescriptorStruct, TEXT("StaticMesh")) : nullptr;
				FSimulatedValue* Weight = SimPcgExecField(Entry, EntryStruct, TEXT("Weight"));
				if (Mesh && !Mesh->Text.IsEmpty() && Weight && Weight->Integer > 0)
				{
					Entries.Add({Mesh->Text, Weight->Integer});
					TotalWeight += Weight->Integer;
				}
			}
			if (TotalWeight <= 0)
			{
				return;
			}
			for (const FSimPcgData& Input : Inputs)
			{
				for (const FSimulatedPcgPoint& Point : Input.Points)
				{
					int64 Pick = (int64)(Point.Seed % (uint32)TotalWeight);
					for (const TPair<FString, int64>& Entry : Entries)
					{
						if (Pick < Entry.Value)
						{
							++MeshInstances.FindOrAdd(Entry.Key);
							break;
						}
						Pick -= Entry.Value;
					}
				}
			}
		}

		// The template class at each point, tagged with TagsToAddOnActors.
		void SpawnActors(const FSimulatedObject& Settings, const std::vector<FSimPcgData>& Inputs)
		{
			const FSimulatedValue* TemplateClass = World.FindValue(Settings, TEXT("TemplateActorClass"));
			FSimulatedType* Class = TemplateClass ? dynamic_cast<FSimulatedType*>(TemplateClass->Object) : nullptr;
			if (!Class)
			{
				return;
			}
			const FSimulatedValue* TagsToAdd = World.FindValue(Settings, TEXT("TagsToAddOnActors"));
			for (const FSimPcgData& Input : Inputs)
			{
				for (const FSimulatedPcgPoint& Point : Input.Points)
				{
					FString SpawnError;
					FSimulatedActor* Actor = World.SpawnActorFromClass(Class, Point.Location, FSimulatedRotator(), false, SpawnError);
					if (!Actor)
					{
						return;
					}
					TArray<FName> Tags = World.GetTags(*Actor);
					for (const FSimulatedValue& Tag : TagsToAdd ? TagsToAdd->Items : std::vector<FSimulatedValue>())
					{
						Tags.AddUnique(FName(*Tag.Text));
					}
					World.SetTags(*Actor, Tags);
					Spawned.push_back(Actor);
				}
			}
		}

		FSimulatedWorld& World;
		FSimulatedEditor& Editor;
		FSimulatedObject& Component;
		FSimulatedActor& Owner;
		FSimulatedObject& Graph;
		uint32 ComponentSeed = 42u;
		TMap<const FSimulatedObject*, FSimPcgNodeOutput> Results;
		std::unordered_set<const FSimulatedObject*> Visiting;
	};
}

FSimulatedObject* FSimulatedPcg::MakePointData(const std::vector<FSimulatedPcgPoint>& Points)
{
	FSimulatedEditor& Editor = World.GetEditor();
	FSimulatedObject* TransientPackage = Editor.FindOrCreatePackage(TEXT("/Engine/Transient"));
	FSimulatedType* PointDataClass = Editor.FindTypeByPath(SimPcgExecPointArrayDataClassPath);
	FString Ignored;
	FSimulatedObject* Data = nullptr;
	while (PointDataClass && !Data)
	{
		Data = Editor.CreateObject(PointDataClass, TransientPackage, FString::Printf(TEXT("PCGPointArrayData_%d"), ObjectCounter++), Ignored);
	}
	if (Data)
	{
		PointData[Data] = Points;
	}
	return Data;
}

void FSimulatedPcg::WriteGraphOutput(FSimulatedObject& Component, const std::vector<FSimulatedObject*>& OutputData)
{
	// GeneratedGraphOutput.TaggedData: one PCGTaggedData per data on the output node's Out pin,
	// its Data wrapper holding the data object (TaggedData[i].Data.Data).
	const int32 OutputIndex = Component.Class->FindPropertyIndex(TEXT("GeneratedGraphOutput"));
	if (OutputIndex == INDEX_NONE)
	{
		return;
	}
	const FSimulatedType* Collection = Component.Class->AllProperties[(size_t)OutputIndex]->TypeObject;
	const int32 TaggedDataIndex = Collection ? Collection->FindPropertyIndex(TEXT("TaggedData")) : INDEX_NONE;
	FSimulatedValue* TaggedData = SimPcgExecField(Component.Values[(size_t)OutputIndex], Collection, TEXT("TaggedData"));
	if (!TaggedData || TaggedDataIndex == INDEX_NONE || !Collection->AllProperties[(size_t)TaggedDataIndex]->Inner)
	{
		return;
	}
	TaggedData->Items.clear();
	const FSimulatedProperty& EntryProperty = *Collection->AllProperties[(size_t)TaggedDataIndex]->Inner;
	const FSimulatedType* EntryStruct = EntryProperty.TypeObject;
	const int32 WrapperIndex = EntryStruct ? EntryStruct->FindPropertyIndex(TEXT("Data")) : INDEX_NONE;
	const FSimulatedType* WrapperStruct = WrapperIndex == INDEX_NONE ? nullptr : EntryStruct->AllProperties[(size_t)WrapperIndex]->TypeObject;
	for (FSimulatedObject* Data : OutputData)
	{
		FSimulatedValue Entry = World.GetEditor().MakeDefaultValue(EntryProperty);
		if (FSimulatedValue* Wrapper = SimPcgExecField(Entry, EntryStruct, TEXT("Data")))
		{
			if (FSimulatedValue* Pointer = SimPcgExecField(*Wrapper, WrapperStruct, TEXT("Data")))
			{
				Pointer->Object = Data;
			}
		}
		if (FSimulatedValue* Pin = SimPcgExecField(Entry, EntryStruct, TEXT("Pin")))
		{
			Pin->Text = TEXT("Out");
		}
		TaggedData->Items.push_back(Entry);
	}
}

void FSimulatedPcg::Generate(FSimulatedObject& Component)
{
	FSimulatedEditor& Editor = World.GetEditor();
	FSimulatedActor* Owner = World.FindActor(Component.Outer);
	FSimulatedObject* Graph = FindGraph(Component);
	if (!Owner || !Graph)
	{
		return;
	}
	// Regenerating releases what the last run made.
	ReleaseResources(Component);

	FSimPcgGraphRun Run(World, Component, *Owner, *Graph);
	Run.Run();

	FSimulatedPcgRunSummary Summary;
	std::vector<FSimulatedObject*> OutputData;
	for (const std::vector<FSimulatedPcgPoint>& Points : Run.Output)
	{
		if (FSimulatedObject* Data = MakePointData(Points))
		{
			OutputData.push_back(Data);
			Summary.OutputPointCount += (int32)Points.size();
		}
	}
	WriteGraphOutput(Component, OutputData);

	FString Ignored;
	FSimulatedValue* Resources = World.FindValue(Component, TEXT("GeneratedResources"));
	const auto AddResource = [&](const TCHAR* ClassPath, const TCHAR* Base) -> FSimulatedObject*
	{
		FSimulatedType* Class = Editor.FindTypeByPath(ClassPath);
		FSimulatedObject* Managed = nullptr;
		while (Class && Resources && !Managed)
		{
			Managed = Editor.CreateObject(Class, &Component, FString::Printf(TEXT("%s_%d"), Base, ObjectCounter++), Ignored);
		}
		if (Managed)
		{
			FSimulatedValue Resource;
			Resource.Object = Managed;
			Resources->Items.push_back(Resource);
		}
		return Managed;
	};
	// One managed ISM resource per mesh the spawner used. The instanced static mesh component it
	// manages is not simulated: GeneratedComponent stays empty.
	for (const TPair<FString, int32>& Mesh : Run.MeshInstances)
	{
		AddResource(SimPcgExecManagedIsmClassPath, TEXT("PCGManagedISMComponent"));
		Summary.MeshInstanceCounts.Add(Mesh.Key, Mesh.Value);
	}
	if (!Run.Spawned.empty())
	{
		if (FSimulatedObject* Managed = AddResource(SimPcgExecManagedActorsClassPath, TEXT("PCGManagedActors")))
		{
			if (FSimulatedValue* ActorList = World.FindValue(*Managed, TEXT("GeneratedActorsArray")))
			{
				for (const FSimulatedActor* Actor : Run.Spawned)
				{
					FSimulatedValue Item;
					Item.Text = Actor->Object->GetPathName();
					ActorList->Items.push_back(Item);
				}
			}
		}
		SpawnedActors[&Component] = Run.Spawned;
		Summary.SpawnedActorCount = (int32)Run.Spawned.size();
	}
	LastRuns[&Component] = Summary;

	const FSimulatedBox Bounds = World.GetActorBounds(*Owner);
	if (FSimulatedValue* LastBounds = World.FindValue(Component, TEXT("LastGeneratedBounds")))
	{
		if (LastBounds->Items.size() >= 3)
		{
			for (int32 Corner = 0; Corner < 2; ++Corner)
			{
				const FSimulatedVector& Vector = Corner == 0 ? Bounds.Min : Bounds.Max;
				FSimulatedValue& Value = LastBounds->Items[(size_t)Corner];
				if (Value.Items.size() >= 3)
				{
					Value.Items[0].Real = Vector.X;
					Value.Items[1].Real = Vector.Y;
					Value.Items[2].Real = Vector.Z;
				}
			}
			LastBounds->Items[2].Integer = Bounds.bIsValid ? 1 : 0;
		}
	}
	if (FSimulatedValue* Generated = World.FindValue(Component, TEXT("bGenerated")))
	{
		Generated->Bool = true;
	}
	if (FSimulatedValue* Dirty = World.FindValue(Component, TEXT("bDirtyGenerated")))
	{
		Dirty->Bool = false;
	}
}
