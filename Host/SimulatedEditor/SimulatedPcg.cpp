#include "SimulatedPcg.h"

#include "SimulatedEditor.h"
#include "SimulatedWorld.h"

#include <algorithm>

namespace
{
	const TCHAR* const SimPcgPackage = TEXT("/Script/PCG");
	const TCHAR* const SimPcgComponentClassPath = TEXT("/Script/PCG.PCGComponent");
	const TCHAR* const SimPcgGraphInstanceClassPath = TEXT("/Script/PCG.PCGGraphInstance");
	const TCHAR* const SimPcgGraphInterfaceClassPath = TEXT("/Script/PCG.PCGGraphInterface");
	const TCHAR* const SimPcgBasePointDataClassPath = TEXT("/Script/PCG.PCGBasePointData");

	// The field of a struct value by name (the struct's field order decides the item).
	FSimulatedValue* SimPcgCoreField(FSimulatedValue& StructValue, const FSimulatedType* Struct, const TCHAR* FieldName)
	{
		const int32 Index = Struct ? Struct->FindPropertyIndex(FieldName) : INDEX_NONE;
		return Index == INDEX_NONE || Index >= (int32)StructValue.Items.size() ? nullptr : &StructValue.Items[(size_t)Index];
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
	// SetGraph puts the graph into the component's graph instance; a graph that is no graph
	// interface is not taken. It does not generate: the bridge's components generate on demand.
	Bind(SimPcgComponentClassPath, TEXT("SetGraph"), [this, &Editor](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>& Parameters)
	{
		FSimulatedObject* Graph = Parameters.empty() ? nullptr : Parameters[0].Object;
		const FSimulatedType* GraphInterface = Editor.FindTypeByPath(SimPcgGraphInterfaceClassPath);
		if (!Graph || (Graph->Class && GraphInterface && Graph->Class->IsChildOf(GraphInterface)))
		{
			SetComponentGraph(Self, Graph);
		}
	});
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
	// Per-index getters: an index out of range reads the default value, as the engine's checked
	// accessors would not (they assert); the bridge never asks beyond GetNumPoints.
	Bind(SimPcgBasePointDataClassPath, TEXT("GetTransform"), [this](FSimulatedObject& Self, const FSimulatedFunction& Function, std::vector<FSimulatedValue>& Parameters)
	{
		const auto Found = PointData.find(&Self);
		if (Parameters.size() < 2 || Found == PointData.end() || Parameters[0].Integer < 0 || Parameters[0].Integer >= (int64)Found->second.size())
		{
			return;
		}
		const FSimulatedVector& Location = Found->second[(size_t)Parameters[0].Integer].Location;
		if (FSimulatedValue* Translation = SimPcgCoreField(Parameters[1], Function.Parameters[1]->TypeObject, TEXT("Translation")))
		{
			if (Translation->Items.size() >= 3)
			{
				Translation->Items[0].Real = Location.X;
				Translation->Items[1].Real = Location.Y;
				Translation->Items[2].Real = Location.Z;
			}
		}
	});
	Bind(SimPcgBasePointDataClassPath, TEXT("GetDensity"), [this](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>& Parameters)
	{
		const auto Found = PointData.find(&Self);
		if (Parameters.size() >= 2 && Found != PointData.end() && Parameters[0].Integer >= 0 && Parameters[0].Integer < (int64)Found->second.size())
		{
			Parameters[1].Real = Found->second[(size_t)Parameters[0].Integer].Density;
		}
	});
	// UStaticMeshComponent::SetStaticMesh: the stand-in trees of the PCG visual output get their
	// mesh through it (in the editor world dynamic changes are allowed, so it answers true).
	Bind(TEXT("/Script/Engine.StaticMeshComponent"), TEXT("SetStaticMesh"), [this](FSimulatedObject& Self, const FSimulatedFunction&, std::vector<FSimulatedValue>& Parameters)
	{
		FSimulatedValue* Mesh = World.FindValue(Self, TEXT("StaticMesh"));
		if (Mesh && Parameters.size() >= 2)
		{
			Mesh->Object = Parameters[0].Object;
			Parameters[1].Bool = true;
		}
	});
	BindGraphFunctions();
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
	const FSimulatedValue* Activated = World.FindValue(Component, TEXT("bActivated"));
	const FSimulatedValue* Generated = World.FindValue(Component, TEXT("bGenerated"));
	const FSimulatedValue* Dirty = World.FindValue(Component, TEXT("bDirtyGenerated"));
	const bool bUpToDate = Generated && Generated->Bool && !(Dirty && Dirty->Bool);
	if ((Activated && !Activated->Bool) || !FindGraph(Component) || IsGenerating(Component) || (!bForce && bUpToDate))
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

int32 FSimulatedPcg::GetPointCount(const FSimulatedObject* Data) const
{
	const auto Found = PointData.find(Data);
	return Found != PointData.end() ? (int32)Found->second.size() : 0;
}

const FSimulatedPcgRunSummary* FSimulatedPcg::FindLastRun(const FSimulatedObject& Component) const
{
	const auto Found = LastRuns.find(&Component);
	return Found != LastRuns.end() ? &Found->second : nullptr;
}

int32 FSimulatedPcg::GetEditorNotificationCount(const FSimulatedObject& Graph) const
{
	const auto Found = EditorNotifications.find(&Graph);
	return Found != EditorNotifications.end() ? Found->second : 0;
}

void FSimulatedPcg::ReleaseResources(FSimulatedObject& Component)
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
}

void FSimulatedPcg::Cleanup(FSimulatedObject& Component)
{
	ReleaseResources(Component);
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
