// The PCG plug-in of the simulated editor: its plug-in and module state (a project fixture marks it
// installed, enabled or absent; tests change it), and PCG components whose generation really
// runs, asynchronously as in 5.7: GenerateLocal (and Generate, which runs locally in the editor)
// only schedules; the work completes on the next editor tick (FSimulatedWorld::Tick, which the
// host calls after every request it serves). The graph the simulation runs is the component's
// graph as data: its first Surface Sampler node samples points over the owner's bounds
// (PointsPerSquaredMeter, Looseness, the component's Seed), and a Spawn Actor node with a
// template class spawns an actor at each point, tagged with its TagsToAddOnActors.
//
// Results land where 5.7 keeps them, by reflection: bGenerated, bDirtyGenerated,
// LastGeneratedBounds, GeneratedGraphOutput.TaggedData[i].Data.Data (a PCGPointArrayData whose
// GetNumPoints() UFUNCTION answers the count), GeneratedResources (a PCGManagedActors whose
// GeneratedActorsArray lists the spawned actors; its GeneratedActors stays empty, as in 5.6+).
// bWasGeneratedThisSession is not reflected.
#pragma once

#include "CoreMinimal.h"

#include <unordered_map>
#include <vector>

class FSimulatedObject;
class FSimulatedWorld;
struct FSimulatedActor;
struct FSimulatedComponent;

// What IPluginManager and FModuleManager say about the PCG plug-in.
struct FSimulatedPcgPluginState
{
	bool bInstalled = true;
	bool bEnabled = true;
	bool bModuleExists = true;
	bool bModuleLoaded = true;
};

class FSimulatedPcg
{
public:
	explicit FSimulatedPcg(FSimulatedWorld& InWorld);

	const FSimulatedPcgPluginState& GetPluginState() const { return PluginState; }
	// A state that is not installed is neither enabled nor loaded. Without a loaded module the
	// /Script/PCG classes do not load (LoadObject fails), as in an editor without the module.
	void SetPluginState(const FSimulatedPcgPluginState& State);

	// Gives the PCG classes' UFUNCTIONs their bodies (GenerateLocal, Generate, CleanupLocal,
	// Cleanup, GetNumPoints); called once the fixture's classes exist.
	void BindClassFunctions();
	// A PCG component was created on an actor: its default graph instance subobject.
	void OnComponentCreated(FSimulatedComponent& Component);
	// The graph the component's instance runs (the fixture sets it per placed component).
	bool SetComponentGraph(FSimulatedObject& Component, FSimulatedObject* Graph);

	// GenerateLocal(bForce): false when the request is ignored (no graph, generating already, or
	// generated and not dirty without bForce).
	bool ScheduleGeneration(FSimulatedObject& Component, bool bForce);
	// CleanupLocal: managed resources released (spawned actors destroyed), bGenerated false.
	void Cleanup(FSimulatedObject& Component);
	bool IsGenerating(const FSimulatedObject& Component) const;
	int32 GetPendingGenerationCount() const { return (int32)Pending.size(); }
	// The point count of a point data object the simulation made; 0 for others.
	int32 GetPointCount(const FSimulatedObject* PointData) const;
	// The editor tick: every scheduled generation runs and completes.
	void Tick();
	void OnActorDestroyed(FSimulatedActor& Actor);

private:
	void Generate(FSimulatedObject& Component);
	FSimulatedObject* FindGraph(FSimulatedObject& Component) const;
	void WriteGraphOutput(FSimulatedObject& Component, FSimulatedObject* PointData);

	FSimulatedWorld& World;
	FSimulatedPcgPluginState PluginState;
	std::vector<FSimulatedObject*> Pending;
	std::unordered_map<const FSimulatedObject*, int32> PointCounts;
	// The actors each component's last generation spawned.
	std::unordered_map<const FSimulatedObject*, std::vector<FSimulatedActor*>> SpawnedActors;
	int32 ObjectCounter = 0;
};
