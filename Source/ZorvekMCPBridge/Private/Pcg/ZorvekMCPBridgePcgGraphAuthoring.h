// PCG graph assets written and read through reflection only: the graph is created by class path
// (/Script/PCG.PCGGraph) through the asset authoring port, nodes are added with the graph's
// AddNodeOfType UFUNCTION, settings are set by property name (ImportText), the mesh spawner gets
// its selector through SetMeshSelectorType before its MeshEntries are written, edges are made with
// AddEdge and exact pin labels, and ForceNotificationForEditor tells the editor the graph changed.
// Reading walks the protected but reflected members: Nodes, InputNode, OutputNode, each node's
// SettingsInterface, InputPins and OutputPins, each pin's Properties.Label and Edges, each edge's
// InputPin (upstream) and OutputPin (downstream).
// Not in the reference notes; check against the engine: the UPCGNode pin arrays, UPCGPin and
// UPCGEdge member names above.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"

class IZorvekMCPBridgeEditorPort;

struct FZorvekMCPBridgePcgNodeSnapshot
{
	FZorvekMCPBridgeObjectHandle Node;
	FZorvekMCPBridgeObjectHandle Settings;
	FString Name;
	FString SettingsClassPath;
	// "input", "output" or "node".
	FString Role;
	TArray<FString> InputPins;
	TArray<FString> OutputPins;
};

struct FZorvekMCPBridgePcgEdgeSnapshot
{
	int32 FromNode = INDEX_NONE;
	FString FromPin;
	int32 ToNode = INDEX_NONE;
	FString ToPin;
};

// A graph as reflection shows it: the input node, the output node, then Nodes in order.
struct FZorvekMCPBridgePcgGraphSnapshot
{
	FString GraphPath;
	TArray<FZorvekMCPBridgePcgNodeSnapshot> Nodes;
	TArray<FZorvekMCPBridgePcgEdgeSnapshot> Edges;

	// The first node whose settings are of that class (subclasses included); INDEX_NONE if none.
	int32 FindNodeBySettingsClass(IZorvekMCPBridgeEditorPort& Port, const FString& SettingsClassPath) const;
	int32 FindRole(const FString& Role) const;
	bool HasEdge(int32 FromNode, const FString& FromPin, int32 ToNode, const FString& ToPin) const;
};

namespace ZorvekMCPBridgePcgGraphAuthoring
{
	extern const TCHAR* const GraphClassPath;
	extern const TCHAR* const SurfaceSamplerClassPath;
	extern const TCHAR* const DensityFilterClassPath;
	extern const TCHAR* const StaticMeshSpawnerClassPath;
	extern const TCHAR* const SpawnActorClassPath;
	extern const TCHAR* const WeightedMeshSelectorClassPath;

	// A new graph asset AssetName in the package PackageName (created when missing), announced to
	// the asset registry and its package marked dirty (not saved). The caller has checked that
	// the package name is valid and that no object of that name exists.
	bool CreateGraphAsset(IZorvekMCPBridgeEditorPort& Port, const FString& PackageName, const FString& AssetName, FZorvekMCPBridgeObjectHandle& OutGraph, FString& OutError);

	// AddNodeOfType with the settings class loaded by path: the new node and its settings.
	bool AddNodeOfType(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Graph, const FString& SettingsClassPath, FZorvekMCPBridgeObjectHandle& OutNode, FZorvekMCPBridgeObjectHandle& OutSettings, FString& OutError);

	// The graph's GetInputNode / GetOutputNode UFUNCTIONs; invalid when they answer nothing.
	FZorvekMCPBridgeObjectHandle GetInputNode(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Graph);
	FZorvekMCPBridgeObjectHandle GetOutputNode(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Graph);

	// A settings property by name from its export text form ("0.050000", "(X=50,Y=50,Z=50)").
	bool SetSettingsProperty(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Settings, const FString& PropertyName, const FString& Text, FString& OutError);
	// A property's export text; empty when the object has no such property.
	FString GetPropertyText(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Object, const FString& PropertyName);

	// The weighted mesh list of a Static Mesh Spawner: SetMeshSelectorType with the weighted
	// selector (which makes the instanced MeshSelectorParameters object), then its MeshEntries
	// from (mesh object path, weight) pairs.
	bool SetWeightedMeshEntries(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle SpawnerSettings, const TArray<TPair<FString, int32>>& Meshes, FString& OutError);

	// AddEdge(From, FromPin, To, ToPin). The UFUNCTION returns To whether or not it connected, so
	// the edge is read back: false with "PCG graph did not connect <from>.<pin> to <to>.<pin>."
	// when it is missing.
	bool AddEdge(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Graph, FZorvekMCPBridgeObjectHandle From, const FString& FromPin, FZorvekMCPBridgeObjectHandle To, const FString& ToPin, FString& OutError);

	// ForceNotificationForEditor(Structural), so components using the graph see the change.
	bool NotifyEditor(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Graph, FString& OutError);

	bool ReadGraph(IZorvekMCPBridgeEditorPort& Port, FZorvekMCPBridgeObjectHandle Graph, FZorvekMCPBridgePcgGraphSnapshot& OutGraph);

	// {"graph_path", "node_count", "nodes": [{"index", "name", "role", "settings_class_path",
	// "input_pins", "output_pins", "properties": {name: export text}}], "edge_count",
	// "edges": [{"from_node", "from_pin", "to_node", "to_pin"}]}. Properties are the key settings
	// of the node kinds the forest uses, and "MeshEntries" of a spawner's selector.
	TSharedPtr<FJsonObject> MakeGraphJson(IZorvekMCPBridgeEditorPort& Port, const FZorvekMCPBridgePcgGraphSnapshot& Graph);
}
