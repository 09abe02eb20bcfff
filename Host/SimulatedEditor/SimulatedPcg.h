// The PCG plug-in of the simulated editor: its plug-in and module state (a project fixture marks it
// installed, enabled or absent; tests change it), PCG graphs that tools author through the graph
// classes' UFUNCTIONs (SimulatedPcgGraph.cpp), and PCG components whose generation really runs the
// graph (SimulatedPcgExecution.cpp), asynchronously as in 5.7: GenerateLocal (and Generate, which
// runs locally in the editor) only schedules; the work completes on the next editor tick
// (FSimulatedWorld::Tick, which the host calls after every request it serves).
//
// A graph is data, as in the engine: UPCGGraph holds Nodes plus its InputNode and OutputNode
// (default subobjects its constructor makes), each UPCGNode its SettingsInterface, InputPins and
// OutputPins (UPCGPin: Node, Properties.Label, Edges), each UPCGEdge its InputPin (the upstream
// node's output pin) and OutputPin (the downstream node's input pin). Execution follows the edges:
// the input node's "Input" pin carries the owner's bounds, a Surface Sampler samples points over
// the spatial data on its "Surface" pin (PointsPerSquaredMeter, Looseness, the node seed mixed
// with the component Seed), a Density Filter keeps points whose density lies in its bounds, a
// Static Mesh Spawner assigns each point a mesh of its weighted MeshEntries and registers one
// managed ISM resource per mesh used, a Spawn Actor spawns its template class at each point, and
// what reaches the output node's "Out" pin becomes GeneratedGraphOutput.
//
// Results land where 5.7 keeps them, by reflection: bGenerated, bDirtyGenerated,
// LastGeneratedBounds, GeneratedGraphOutput.TaggedData[i].Data.Data (a PCGPointArrayData whose
// GetNumPoints() and GetTransform(i) UFUNCTIONs answer), GeneratedResources (PCGManagedActors whose
// GeneratedActorsArray lists spawned actors, GeneratedActors staying empty as in 5.6+, and
// PCGManagedISMComponent entries). bWasGeneratedThisSession is not reflected.
#pragma once

#include "CoreMinimal.h"
#include "SimulatedWorldMath.h"

#include <unordered_map>
#include <vector>

class FSimulatedObject;
class FSimulatedType;
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

// One point of a point data object: position and density (the sampler's points have density 1).
struct FSimulatedPcgPoint
{
	FSimulatedVector Location;
	double Density = 1.0;
	uint32 Seed = 0;
};

// What one generation produced, for tests: the points that reached the output node and the
// static mesh instances per mesh path.
struct FSimulatedPcgRunSummary
{
	int32 OutputPointCount = 0;
	TMap<FString, int32> MeshInstanceCounts;
	int32 SpawnedActorCount = 0;
};

class FSimulatedPcg
{
public:
	explicit FSimulatedPcg(FSimulatedWorld& InWorld);

	const FSimulatedPcgPluginState& GetPluginState() const { return PluginState; }
	// A state that is not installed is neither enabled nor loaded. Without a loaded module the
	// /Script/PCG classes do not load (LoadObject fails), as in an editor without the module.
	void SetPluginState(const FSimulatedPcgPluginState& State);

	// Gives the PCG classes' UFUNCTIONs their bodies (the component's GenerateLocal, Generate,
	// CleanupLocal, Cleanup and SetGraph; the point data getters; the graph, node and mesh spawner
	// functions) and the graph class its constructor; called once the fixture's classes exist.
	void BindClassFunctions();
	// A PCG component was created on an actor: its default graph instance subobject.
	void OnComponentCreated(FSimulatedComponent& Component);
	// The graph the component's instance runs (SetGraph, and the fixture per placed component).
	bool SetComponentGraph(FSimulatedObject& Component, FSimulatedObject* Graph);

	// GenerateLocal(bForce): false when the request is ignored (not activated, no graph,
	// generating already, or generated and not dirty without bForce).
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
	// The last completed generation of a component; null before the first.
	const FSimulatedPcgRunSummary* FindLastRun(const FSimulatedObject& Component) const;
	// How often ForceNotificationForEditor was called on a graph.
	int32 GetEditorNotificationCount(const FSimulatedObject& Graph) const;

	// Graph authoring as the graph's UFUNCTIONs do it (SimulatedPcgGraph.cpp).
	// AddNodeOfType: a node with new settings of the class and the class's pins, appended to
	// Nodes; null for no class, an abstract class or one that is no PCGSettings.
	FSimulatedObject* AddNodeOfType(FSimulatedObject& Graph, FSimulatedType* SettingsClass, FSimulatedObject*& OutSettings);
	// AddEdge: connects From's output pin to To's input pin of those labels. False (and nothing
	// changes) when a node or pin is missing or the two are connected already; the UFUNCTION
	// returns To either way, as the engine's does.
	bool AddEdge(FSimulatedObject& Graph, FSimulatedObject* From, const FString& FromPinLabel, FSimulatedObject* To, const FString& ToPinLabel);
	// A node's pin by label (FName comparison: case does not matter); null when there is none.
	FSimulatedObject* FindPin(const FSimulatedObject& Node, bool bOutputPin, const FString& Label) const;

private:
	void BindGraphFunctions();
	void ConstructGraph(FSimulatedObject& Graph);
	FSimulatedObject* CreateNode(FSimulatedObject& Graph, const FString& NodeName, FSimulatedObject* Settings, const TArray<FString>& InputLabels, const TArray<FString>& OutputLabels);
	FSimulatedObject* CreatePin(FSimulatedObject& Node, const FString& Label, const TCHAR* PinListName);
	FString MakeUniqueName(const FSimulatedObject& Outer, const FString& Base) const;

	void Generate(FSimulatedObject& Component);
	FSimulatedObject* FindGraph(FSimulatedObject& Component) const;
	FSimulatedObject* MakePointData(const std::vector<FSimulatedPcgPoint>& Points);
	void WriteGraphOutput(FSimulatedObject& Component, const std::vector<FSimulatedObject*>& OutputData);
	void ReleaseResources(FSimulatedObject& Component);

	FSimulatedWorld& World;
	FSimulatedPcgPluginState PluginState;
	std::vector<FSimulatedObject*> Pending;
	std::unordered_map<const FSimulatedObject*, std::vector<FSimulatedPcgPoint>> PointData;
	// The actors each component's last generation spawned.
	std::unordered_map<const FSimulatedObject*, std::vector<FSimulatedActor*>> SpawnedActors;
	std::unordered_map<const FSimulatedObject*, FSimulatedPcgRunSummary> LastRuns;
	std::unordered_map<const FSimulatedObject*, int32> EditorNotifications;
	int32 ObjectCounter = 0;
};
