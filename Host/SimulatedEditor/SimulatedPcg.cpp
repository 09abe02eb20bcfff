#include "SimulatedPcg.h"

#include "SimulatedEditor.h"
#include "SimulatedWorld.h"

#include <algorithm>
#include <cmath>

namespace
{
	const TCHAR* const SimPcgPackage = TEXT("/Script/PCG");
	const TCHAR* const SimPcgComponentClassPath = TEXT("/Script/PCG.PCGComponent");
	const TCHAR* const SimPcgGraphInstanceClassPath = TEXT("/Script/PCG.PCGGraphInstance");
	const TCHAR* const SimPcgBasePointDataClassPath = TEXT("/Script/PCG.PCGBasePointData");
	const TCHAR* const SimPcgPointArrayDataClassPath = TEXT("/Script/PCG.PCGPointArrayData");
	const TCHAR* const SimPcgManagedActorsClassPath = TEXT("/Script/PCG.PCGManagedActors");
	const TCHAR* const SimPcgSurfaceSamplerClassPath = TEXT("/Script/PCG.PCGSurfaceSamplerSettings");
	const TCHAR* const SimPcgSpawnActorClassPath = TEXT("/Script/PCG.PCGSpawnActorSettings");

	// A small deterministic generator for the sampler's jitter (the seed decides the points).
	uint32 SimPcgHash(uint32 Value)
	{
		Value ^= Value >> 16;
		Value *= 0x7feb352du;
		Value ^= Value >> 15;
		Value *= 0x846ca68bu;
		Value ^= Value >> 16;
		return Value;
	}

	double SimPcgUnit(uint32 Seed, uint32 Index, uint32 Axis)
	{
		return (double)(SimPcgHash(Seed * 73856093u ^ Index * 19349663u ^ Axis * 83492791u) % 100000u) / 100000.0;
	}

	// The field of a struct value by name (the struct's field order decides the item).
	FSimulatedValue* SimPcgField(FSimulatedValue& StructValue, const FSimulatedProperty& StructProperty, const TCHAR* FieldName, const FSimulatedProperty** OutField = nullptr)
	{
		const FSimulatedType* Struct = StructProperty.TypeObject;
		const int32 Index = Struct ? Struct->FindPropertyIndex(FieldName) : INDEX_NONE;
		if (Index == INDEX_NONE || Index >= (int32)StructValue.Items.size())
		{
			return nullptr;
		}
		if (OutField)
		{
			*OutField = Struct->AllProperties[(size_t)Index];
		}
		return &StructValue.Items[(size_t)Index];
	}

	void SimPcgSetVector(FSimulatedValue& Value, const FSimulatedVector& Vector)
	{
		if (Value.Items.size() >= 3)
		{
			Value.Items[0].Real = Vector.X;
			Value.Items[1].Real = Vector.Y;
			Value.Items[2].Real = Vector.Z;
		}
	}
}

FSimulatedPcg::FSimulatedPcg(FSimulatedWorld& InWorld)
	: World(InWorld)
{
}

void FSimulatedPcg::SetPluginState(const FSimulatedPcgPluginState& State)
{
	PluginState = State;
	if (!PluginState.bInstalled)
	{
		PluginState.bEnabled = false;
		PluginState.bModuleExists = false;
		PluginState.bModuleLoaded = false;
	}
	if (FSimulatedObject* Package = World.GetEditor().FindObject(SimPcgPackage))
	{
		Package->bLoadable = PluginState.bModuleLoaded;
	}
}

void FSimulatedPcg::BindClassFunctions()
{
	FSimulatedEditor& Editor = World.GetEditor();
	const auto Bind = [&Editor](const TCHAR* ClassPath, const TCHAR* FunctionName, FSimulatedFunctionBody Body)
	{
		FSimulatedType* Class = Editor.FindTypeByPath(ClassPath);
		if (!Class)
		{
			return;
		}
		for (const std::shared_ptr<FSimulatedFunction>& Function : Class->Functions)
		{
			if (Function->Name.Equals(FunctionName, ESearchCase::IgnoreCase))
			{
				Function->Body = Body;
			}
		}
	};
	const auto FirstBool = [](const std::vector<FSimulatedValue>& Parameters)
	{
		return !Parameters.empty() && Parameters[0].Bool;
	};
	// Generate and Cleanup are NetMulticast: in the editor world they just run locally.
	for (const TCHAR* Name : {TEXT("GenerateLocal"), TEXT("Generate")})
	{
		Bind(SimPcgComponentClassPath, Name, [this, FirstBool](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>& Parameters)
		{
			ScheduleGeneration(Self, FirstBool(Parameters));
		});
	}
	for (const TCHAR* Name : {TEXT("CleanupLocal"), TEXT("Cleanup")})
	{
		Bind(SimPcgComponentClassPath, Name, [this](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>&)
		{
			Cleanup(Self);
		});
	}
	Bind(SimPcgBasePointDataClassPath, TEXT("GetNumPoints"), [this](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>& Parameters)
	{
		if (!Parameters.empty())
		{
			Parameters.back().Integer = GetPointCount(&Self);
		}
	});
	Bind(SimPcgBasePointDataClassPath, TEXT("IsEmpty"), [this](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>& Parameters)
	{
		if (!Parameters.empty())
		{
			Parameters.back().Bool = GetPointCount(&Self) == 0;
		}
	});
}

void FSimulatedPcg::OnComponentCreated(FSimulatedComponent& Component)
{
	FSimulatedEditor& Editor = World.GetEditor();
	FSimulatedType* InstanceClass = Editor.FindTypeByPath(SimPcgGraphInstanceClassPath);
	FSimulatedValue* GraphInstance = World.FindValue(*Component.Object, TEXT("GraphInstance"));
	if (!InstanceClass || !GraphInstance)
	{
		return;
	}
	FString Ignored;
	if (FSimulatedObject* Instance = Editor.CreateObject(InstanceClass, Component.Object, TEXT("DefaultPCGGraphInstance"), Ignored))
	{
		Instance->bDefaultSubobject = true;
		GraphInstance->Object = Instance;
	}
}

bool FSimulatedPcg::SetComponentGraph(FSimulatedObject& Component, FSimulatedObject* Graph)
{
	const FSimulatedValue* GraphInstance = World.FindValue(Component, TEXT("GraphInstance"));
	FSimulatedValue* GraphValue = GraphInstance && GraphInstance->Object ? World.FindValue(*GraphInstance->Object, TEXT("Graph")) : nullptr;
	if (!GraphValue)
	{
		return false;
	}
	GraphValue->Object = Graph;
	return true;
}

FSimulatedObject* FSimulatedPcg::FindGraph(FSimulatedObject& Component) const
{
	const FSimulatedValue* GraphInstance = World.FindValue(Component, TEXT("GraphInstance"));
	const FSimulatedValue* GraphValue = GraphInstance && GraphInstance->Object ? World.FindValue(*GraphInstance->Object, TEXT("Graph")) : nullptr;
	return GraphValue ? GraphValue->Object : nullptr;
}

bool FSimulatedPcg::IsGenerating(const FSimulatedObject& Component) const
{
	return std::find(Pending.begin(), Pending.end(), &Component) != Pending.end();
}

bool FSimulatedPcg::ScheduleGeneration(FSimulatedObject& Component, bool bForce)
{
	const FSimulatedValue* Generated = World.FindValue(Component, TEXT("bGenerated"));
	const FSimulatedValue* Dirty = World.FindValue(Component, TEXT("bDirtyGenerated"));
	const bool bUpToDate = Generated && Generated->Bool && !(Dirty && Dirty->Bool);
	if (!FindGraph(Component) || IsGenerating(Component) || (!bForce && bUpToDate))
	{
		return false;
	}
	Pending.push_back(&Component);
	return true;
}

void FSimulatedPcg::Tick()
{
	std::vector<FSimulatedObject*> Scheduled;
	Scheduled.swap(Pending);
	for (FSimulatedObject* Component : Scheduled)
	{
		Generate(*Component);
	}
}

int32 FSimulatedPcg::GetPointCount(const FSimulatedObject* PointData) const
{
	const auto Found = PointCounts.find(PointData);
	return Found != PointCounts.end() ? Found->second : 0;
}

void FSimulatedPcg::Cleanup(FSimulatedObject& Component)
{
	const auto Spawned = SpawnedActors.find(&Component);
	if (Spawned != SpawnedActors.end())
	{
		std::vector<FSimulatedActor*> Actors;
		for (FSimulatedActor* Actor : Spawned->second)
		{
			if (World.FindActor(Actor->Object) == Actor)
			{
				Actors.push_back(Actor);
			}
		}
		SpawnedActors.erase(Spawned);
		FString Ignored;
		World.DestroyActors(Actors, Ignored);
	}
	if (FSimulatedValue* Resources = World.FindValue(Component, TEXT("GeneratedResources")))
	{
		Resources->Items.clear();
	}
	if (FSimulatedValue* Generated = World.FindValue(Component, TEXT("bGenerated")))
	{
		Generated->Bool = false;
	}
}

void FSimulatedPcg::OnActorDestroyed(FSimulatedActor& Actor)
{
	// A destroyed owner takes its scheduled generations with it.
	for (const std::unique_ptr<FSimulatedComponent>& Component : Actor.Components)
	{
		Pending.erase(std::remove(Pending.begin(), Pending.end(), Component->Object), Pending.end());
	}
}

void FSimulatedPcg::WriteGraphOutput(FSimulatedObject& Component, FSimulatedObject* PointData)
{
	// GeneratedGraphOutput.TaggedData = one PCGTaggedData on the Out pin whose Data wrapper
	// holds the point data (TaggedData[0].Data.Data).
	const int32 OutputIndex = Component.Class->FindPropertyIndex(TEXT("GeneratedGraphOutput"));
	if (OutputIndex == INDEX_NONE)
	{
		return;
	}
	const FSimulatedProperty& OutputProperty = *Component.Class->AllProperties[(size_t)OutputIndex];
	const FSimulatedProperty* TaggedDataProperty = nullptr;
	FSimulatedValue* TaggedData = SimPcgField(Component.Values[(size_t)OutputIndex], OutputProperty, TEXT("TaggedData"), &TaggedDataProperty);
	if (!TaggedData || !TaggedDataProperty->Inner)
	{
		return;
	}
	TaggedData->Items.clear();
	if (!PointData)
	{
		return;
	}
	const FSimulatedProperty& EntryProperty = *TaggedDataProperty->Inner;
	FSimulatedValue Entry = World.GetEditor().MakeDefaultValue(EntryProperty);
	const FSimulatedProperty* WrapperProperty = nullptr;
	if (FSimulatedValue* Wrapper = SimPcgField(Entry, EntryProperty, TEXT("Data"), &WrapperProperty))
	{
		if (FSimulatedValue* Pointer = SimPcgField(*Wrapper, *WrapperProperty, TEXT("Data")))
		{
			Pointer->Object = PointData;
		}
	}
	if (FSimulatedValue* Pin = SimPcgField(Entry, EntryProperty, TEXT("Pin")))
	{
		Pin->Text = TEXT("Out");
	}
	TaggedData->Items.push_back(Entry);
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
	Cleanup(Component);

	// The graph's nodes: the first surface sampler and spawn actor settings.
	const FSimulatedObject* Sampler = nullptr;
	const FSimulatedObject* Spawner = nullptr;
	if (const FSimulatedValue* Nodes = World.FindValue(*Graph, TEXT("Nodes")))
	{
		for (const FSimulatedValue& NodeValue : Nodes->Items)
		{
			const FSimulatedValue* Settings = NodeValue.Object ? World.FindValue(*NodeValue.Object, TEXT("SettingsInterface")) : nullptr;
			const FSimulatedObject* SettingsObject = Settings ? Settings->Object : nullptr;
			const FSimulatedType* SamplerClass = Editor.FindTypeByPath(SimPcgSurfaceSamplerClassPath);
			const FSimulatedType* SpawnerClass = Editor.FindTypeByPath(SimPcgSpawnActorClassPath);
			if (SettingsObject && SamplerClass && SettingsObject->Class->IsChildOf(SamplerClass) && !Sampler)
			{
				Sampler = SettingsObject;
			}
			if (SettingsObject && SpawnerClass && SettingsObject->Class->IsChildOf(SpawnerClass) && !Spawner)
			{
				Spawner = SettingsObject;
			}
		}
	}

	// Surface sampling over the owner's bounds: one point per cell of 1 / PointsPerSquaredMeter
	// square metres, jittered inside its cell by Looseness, on the top of the bounds.
	const FSimulatedBox Bounds = World.GetActorBounds(*Owner);
	std::vector<FSimulatedVector> Points;
	if (Sampler && Bounds.bIsValid)
	{
		const FSimulatedValue* Density = World.FindValue(*Sampler, TEXT("PointsPerSquaredMeter"));
		const FSimulatedValue* Looseness = World.FindValue(*Sampler, TEXT("Looseness"));
		const FSimulatedValue* Seed = World.FindValue(Component, TEXT("Seed"));
		const double PointsPerSquaredMeter = Density ? Density->Real : 0.1;
		if (PointsPerSquaredMeter > 0.0)
		{
			const double Cell = 100.0 / std::sqrt(PointsPerSquaredMeter);
			const int32 CellsX = FMath::Min((int32)std::floor((Bounds.Max.X - Bounds.Min.X) / Cell), 1000);
			const int32 CellsY = FMath::Min((int32)std::floor((Bounds.Max.Y - Bounds.Min.Y) / Cell), 1000);
			const double Jitter = Looseness ? Looseness->Real : 1.0;
			const uint32 SeedValue = Seed ? (uint32)Seed->Integer : 42u;
			for (int32 Y = 0; Y < CellsY; ++Y)
			{
				for (int32 X = 0; X < CellsX; ++X)
				{
					const uint32 Index = (uint32)(Y * CellsX + X);
					const double OffsetX = (SimPcgUnit(SeedValue, Index, 0) - 0.5) * Jitter;
					const double OffsetY = (SimPcgUnit(SeedValue, Index, 1) - 0.5) * Jitter;
					Points.push_back({Bounds.Min.X + (X + 0.5 + OffsetX) * Cell, Bounds.Min.Y + (Y + 0.5 + OffsetY) * Cell, Bounds.Max.Z});
				}
			}
		}
	}

	// The output collection: one tagged data on the Out pin holding the point data.
	FSimulatedObject* TransientPackage = Editor.FindOrCreatePackage(TEXT("/Engine/Transient"));
	FSimulatedType* PointDataClass = Editor.FindTypeByPath(SimPcgPointArrayDataClassPath);
	FString Ignored;
	FSimulatedObject* PointData = nullptr;
	while (PointDataClass && !PointData)
	{
		PointData = Editor.CreateObject(PointDataClass, TransientPackage, FString::Printf(TEXT("PCGPointArrayData_%d"), ObjectCounter++), Ignored);
	}
	if (PointData)
	{
		PointCounts[PointData] = (int32)Points.size();
	}
	WriteGraphOutput(Component, PointData);

	// Spawn Actor: the template class at each point, tagged, owned by a managed actors resource.
	std::vector<FSimulatedActor*> Spawned;
	const FSimulatedValue* TemplateClass = Spawner ? World.FindValue(*Spawner, TEXT("TemplateActorClass")) : nullptr;
	if (TemplateClass && TemplateClass->Object)
	{
		const FSimulatedValue* TagsToAdd = World.FindValue(*Spawner, TEXT("TagsToAddOnActors"));
		for (const FSimulatedVector& Point : Points)
		{
			FString SpawnError;
			FSimulatedActor* Actor = World.SpawnActorFromClass(dynamic_cast<FSimulatedType*>(TemplateClass->Object), Point, FSimulatedRotator(), false, SpawnError);
			if (!Actor)
			{
				break;
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
	FSimulatedType* ManagedActorsClass = Editor.FindTypeByPath(SimPcgManagedActorsClassPath);
	FSimulatedValue* Resources = World.FindValue(Component, TEXT("GeneratedResources"));
	if (!Spawned.empty() && ManagedActorsClass && Resources)
	{
		FSimulatedObject* Managed = nullptr;
		while (!Managed)
		{
			Managed = Editor.CreateObject(ManagedActorsClass, &Component, FString::Printf(TEXT("PCGManagedActors_%d"), ObjectCounter++), Ignored);
		}
		if (FSimulatedValue* ActorList = World.FindValue(*Managed, TEXT("GeneratedActorsArray")))
		{
			for (const FSimulatedActor* Actor : Spawned)
			{
				FSimulatedValue Item;
				Item.Text = Actor->Object->GetPathName();
				ActorList->Items.push_back(Item);
			}
		}
		FSimulatedValue Resource;
		Resource.Object = Managed;
		Resources->Items.push_back(Resource);
		SpawnedActors[&Component] = Spawned;
	}

	if (FSimulatedValue* LastBounds = World.FindValue(Component, TEXT("LastGeneratedBounds")))
	{
		if (LastBounds->Items.size() >= 3)
		{
			SimPcgSetVector(LastBounds->Items[0], Bounds.Min);
			SimPcgSetVector(LastBounds->Items[1], Bounds.Max);
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
