// The editor world of the simulated editor: a UWorld (/Game/Maps/<Level>.<Level>) whose persistent
// level holds actors in spawn order, with the engine's behaviour where the world tools depend on
// it: object names by MakeUniqueObjectName, default labels and SetActorLabelUnique numbering,
// Tags, component trees whose world transforms follow their parents, bounds of primitive
// components from their meshes and of actors as GetActorBounds gives them, selection order and
// destruction. Actors and components are simulated objects of their classes, so reflection sees
// their properties (StaticMesh, OverrideMaterials, Tags, RelativeLocation...).
#pragma once

#include "CoreMinimal.h"
#include "SimulatedEditor.h"
#include "SimulatedWorldMath.h"

#include <memory>
#include <unordered_map>
#include <vector>

class FSimulatedViewport;
class FSimulatedPcg;
class FSimulatedSplines;
struct FSimulatedActor;
struct FSimulatedSCSNode;

// The shape a static mesh draws as in the viewport render.
enum class ESimulatedMeshShape : uint8
{
	Box,
	Sphere,
	Cylinder,
	Cone,
	Plane
};

struct FSimulatedMeshInfo
{
	ESimulatedMeshShape Shape = ESimulatedMeshShape::Box;
	// The mesh's bounds in its own space (GetBounds of the render data).
	FSimulatedBox LocalBounds;
};

// What a component is beyond its simulated object.
enum class ESimulatedComponentKind : uint8
{
	// An UActorComponent that is no scene component (PCG components, movement components).
	Actor,
	Scene,
	StaticMesh,
	Capsule,
	// The editor-only sprite the editor adds to components that visualise themselves
	// (USceneComponent::OnRegister with bVisualizeComponent: a Blueprint's DefaultSceneRoot,
	// light components). Transient, not saved, but owned by the actor like any component.
	EditorSprite,
	// Any other primitive (shapes, arrows) without bounds of its own in the simulation.
	OtherPrimitive
};

struct FSimulatedComponent
{
	FSimulatedObject* Object = nullptr;
	FSimulatedActor* Owner = nullptr;
	ESimulatedComponentKind Kind = ESimulatedComponentKind::Actor;
	FSimulatedComponent* AttachParent = nullptr;
	std::vector<FSimulatedComponent*> AttachChildren;
	// The relative transform: the rotator as set (the reflected RelativeRotation) beside the
	// quaternion it stands for, as the component's rotation cache keeps them.
	FSimulatedVector RelativeLocation;
	FSimulatedRotator RelativeRotation;
	FSimulatedQuat RelativeRotationQuat;
	FSimulatedVector RelativeScale3D = {1.0, 1.0, 1.0};
	bool bAbsoluteScale = false;
	// Other primitives: their bounds in their own space (a brush's box); invalid for a point.
	FSimulatedBox LocalBounds;

	bool IsScene() const { return Kind != ESimulatedComponentKind::Actor; }
	bool IsPrimitive() const { return Kind == ESimulatedComponentKind::StaticMesh || Kind == ESimulatedComponentKind::Capsule || Kind == ESimulatedComponentKind::EditorSprite || Kind == ESimulatedComponentKind::OtherPrimitive; }
};

struct FSimulatedActor
{
	FSimulatedObject* Object = nullptr;
	FString Label;
	// OwnedComponents in the order the actor enumerates them: native default subobjects, then
	// the construction script's, then editor sprites registered after them.
	std::vector<std::unique_ptr<FSimulatedComponent>> Components;
	FSimulatedComponent* RootComponent = nullptr;
	bool bTransient = false;
	bool bPendingKill = false;

	FSimulatedComponent* FindComponent(const FSimulatedObject* ComponentObject) const;
};

// One component a native actor class's constructor creates (CreateDefaultSubobject).
struct FSimulatedNativeComponent
{
	FString Name;
	FString ClassPath;
	// Empty for the root component.
	FString ParentName;
	// Export texts of properties the constructor sets (StaticMesh of a shape actor...).
	TMap<FString, FString> Values;
	// Primitives without a mesh or shape properties (brushes): their local bounds.
	FSimulatedBox LocalBounds;
};

class FSimulatedWorld
{
public:
	explicit FSimulatedWorld(FSimulatedEditor& InEditor);
	~FSimulatedWorld();
	FSimulatedWorld(const FSimulatedWorld&) = delete;
	FSimulatedWorld& operator=(const FSimulatedWorld&) = delete;

	// ---- Setting up (the project loader, tests) ----

	// Creates the editor world /Game/Maps/<Name>.<Name> with its PersistentLevel. False, with the
	// reason, when the engine classes World and Level are missing or a world exists already.
	bool CreateEditorWorld(const FString& MapPackageName, FString& OutError);
	// The mesh's shape and local bounds (the /Engine/BasicShapes sizes come from the fixture).
	void SetMeshInfo(const FSimulatedObject* Mesh, const FSimulatedMeshInfo& Info);
	const FSimulatedMeshInfo* FindMeshInfo(const FSimulatedObject* Mesh) const;
	// The components a native actor class's constructor creates; subclasses inherit them.
	void SetNativeComponents(const FSimulatedType* ActorClass, std::vector<FSimulatedNativeComponent> Components);
	// Classes whose components visualise themselves with an editor sprite (light components).
	void AddVisualizedComponentClass(const FSimulatedType* ComponentClass);
	// The size of the editor sprite textures in pixels (bounds: the larger side times the
	// sprite's world scale).
	void SetEditorSpriteSize(double InSpriteSize) { EditorSpriteSize = InSpriteSize; }

	// ---- The world ----

	bool HasEditorWorld() const { return WorldObject != nullptr; }
	FSimulatedObject* GetWorldObject() const { return WorldObject; }
	FSimulatedObject* GetPersistentLevel() const { return LevelObject; }
	FSimulatedEditor& GetEditor() const { return Editor; }

	// UEditorActorSubsystem::GetAllLevelActors: level order (spawn order, holes of destroyed
	// actors skipped), transient and pending-kill actors left out.
	std::vector<FSimulatedActor*> GetAllLevelActors() const;
	int32 GetLevelActorCount() const;
	// Every live actor, transient ones included (what TActorIterator walks).
	std::vector<FSimulatedActor*> GetEveryActor() const;
	// GetSelectedLevelActors: selection order.
	std::vector<FSimulatedActor*> GetSelectedActors() const;
	bool IsSelected(const FSimulatedActor& Actor) const;
	FSimulatedActor* FindActor(const FSimulatedObject* ActorObject) const;
	FSimulatedActor* FindActorByName(const FString& ObjectName) const;
	bool IsActorClass(const FSimulatedType* Class) const;

	// ---- Actors ----

	// UEditorActorSubsystem::SpawnActorFromClass through the actor factory: a new actor at the
	// end of the level under MakeUniqueObjectName, its native components and construction script
	// components (a Blueprint class's templates copied with their values), the default label made
	// unique, location and rotation applied to the root. Not selected. Null, with the engine's
	// message, for a null, abstract or non-actor class or without a world.
	FSimulatedActor* SpawnActorFromClass(FSimulatedType* Class, const FSimulatedVector& Location, const FSimulatedRotator& Rotation, bool bTransient, FString& OutError);
	// AActor::GetDefaultActorLabel: the class name without a Blueprint class's _C.
	FString GetDefaultActorLabel(const FSimulatedType& Class) const;
	// FActorLabelUtilities::SetActorLabelUnique: Label, else Label2, Label3... (a trailing
	// number of Label is continued).
	void SetActorLabelUnique(FSimulatedActor& Actor, const FString& Label);
	// AActor::SetActorLabel: trimmed; refused (false) when the trimmed label is empty; labels are
	// not made unique.
	bool SetActorLabel(FSimulatedActor& Actor, const FString& Label);
	// The actor's Tags (its reflected property), in order.
	TArray<FName> GetTags(const FSimulatedActor& Actor) const;
	void SetTags(FSimulatedActor& Actor, const TArray<FName>& Tags);
	// The root's component-to-world transform; identity without a root.
	FSimulatedTransform GetActorTransform(const FSimulatedActor& Actor) const;
	// SetActorTransform / SetActorLocationAndRotation / SetActorScale3D: move the root (nothing
	// without one).
	void SetActorTransform(FSimulatedActor& Actor, const FSimulatedTransform& Transform);
	void SetActorScale3D(FSimulatedActor& Actor, const FSimulatedVector& Scale);
	// GetActorBounds(false): union of the registered primitive components' boxes; an invalid
	// (zero) box when there are none.
	FSimulatedBox GetActorBounds(const FSimulatedActor& Actor) const;

	// ---- Components ----

	FSimulatedTransform GetComponentToWorld(const FSimulatedComponent& Component) const;
	FSimulatedTransform GetRelativeTransform(const FSimulatedComponent& Component) const;
	// SetRelativeTransform: the rotation through its quaternion; children follow.
	void SetRelativeTransform(FSimulatedComponent& Component, const FSimulatedTransform& Transform);
	// The primitive's world bounds box (Bounds.GetBox()); false for other components.
	bool GetComponentBounds(const FSimulatedComponent& Component, FSimulatedBox& OutBounds) const;
	// The static mesh a static mesh component holds (its StaticMesh property), or null.
	const FSimulatedObject* GetStaticMesh(const FSimulatedComponent& Component) const;

	// ---- Selection and destruction ----

	void SelectNothing();
	void SetActorSelectionState(FSimulatedActor& Actor, bool bSelected);
	// UEditorActorSubsystem::DestroyActors: a null entry refuses everything first ("DestroyActors.
	// An actor to destroy is invalid."); an actor of no editor world fails; otherwise each is
	// deselected and destroyed (its level slot becomes a hole, its object moves to the transient
	// package so its name is free again).
	bool DestroyActors(const std::vector<FSimulatedActor*>& Actors, FString& OutError);

	// The details panel's Add Component: an instance component of the class on the actor, under
	// the name when it is free among the actor's subobjects (else Name_0, Name_1...); a scene
	// component becomes the root of an actor without one and is attached to the root otherwise.
	// Null for a class that is no concrete actor component class.
	FSimulatedComponent* AddInstanceComponent(FSimulatedActor& Actor, FSimulatedType* ComponentClass, const FString& Name);

	// ---- Viewport, PCG and the editor tick ----

	FSimulatedViewport& GetViewport() const { return *Viewport; }
	FSimulatedPcg& GetPcg() const { return *Pcg; }
	FSimulatedSplines& GetSplines() const { return *Splines; }
	// One editor tick: scheduled PCG generations complete, a focus transition that was not
	// instant arrives, and the viewport redraws. The host ticks after every request it serves.
	void Tick();
	int64 GetTickCount() const { return TickCount; }

	// Reflected values of an object by property name (the class's property list is searched
	// once per class); null when the class has no such property.
	FSimulatedValue* FindValue(FSimulatedObject& Object, const FString& PropertyName) const;
	const FSimulatedValue* FindValue(const FSimulatedObject& Object, const FString& PropertyName) const;

private:
	FString MakeUniqueActorName(const FSimulatedType& Class);
	FSimulatedComponent* AddComponent(FSimulatedActor& Actor, FSimulatedType* ComponentClass, const FString& Name, const FSimulatedObject* Template);
	void Attach(FSimulatedComponent& Child, FSimulatedComponent* Parent);
	void AddNativeComponents(FSimulatedActor& Actor, const FSimulatedType& Class);
	void RunConstructionScripts(FSimulatedActor& Actor, const FSimulatedType& Class);
	void AddConstructionScriptNode(FSimulatedActor& Actor, const FSimulatedSCSNode& Node, FSimulatedComponent* Parent);
	void AddEditorSprites(FSimulatedActor& Actor);
	void ReadRelativeTransformFromObject(FSimulatedComponent& Component);
	void WriteRelativeTransformToObject(FSimulatedComponent& Component);
	bool IsLabelTaken(const FString& Label, const FSimulatedActor* Except) const;
	// Every label change goes through here, so the label index stays true.
	void StoreLabel(FSimulatedActor& Actor, const FString& Label);
	void ForgetLabel(const FString& Label);

	FSimulatedEditor& Editor;
	FSimulatedObject* WorldObject = nullptr;
	FSimulatedObject* LevelObject = nullptr;
	// The level's Actors array: spawn order, null where an actor was destroyed.
	std::vector<FSimulatedActor*> LevelActors;
	std::vector<std::unique_ptr<FSimulatedActor>> ActorStorage;
	std::unordered_map<const FSimulatedObject*, FSimulatedActor*> ActorsByObject;
	std::vector<FSimulatedActor*> Selection;
	std::unordered_map<const FSimulatedObject*, FSimulatedMeshInfo> Meshes;
	std::unordered_map<const FSimulatedType*, std::vector<FSimulatedNativeComponent>> NativeComponents;
	std::vector<const FSimulatedType*> VisualizedComponentClasses;
	// Components of the actor being spawned whose construction script node visualises them.
	std::vector<FSimulatedComponent*> VisualizingComponents;
	// How many live actors carry each label (lower case), and per label prefix the smallest
	// number from 2 up that may be free: SetActorLabelUnique stays fast in big levels.
	std::unordered_map<std::u16string, int32> LabelUseCounts;
	std::unordered_map<std::u16string, int32> FreeLabelNumberHints;
	// MakeUniqueObjectName's counter per class.
	std::unordered_map<const FSimulatedType*, int32> ClassUnique;
	mutable std::unordered_map<const FSimulatedType*, std::unordered_map<std::u16string, int32>> PropertyIndexCache;
	mutable std::unordered_map<const FSimulatedType*, int32> TagsIndexCache;
	double EditorSpriteSize = 128.0;
	int64 TickCount = 0;
	std::unique_ptr<FSimulatedViewport> Viewport;
	std::unique_ptr<FSimulatedPcg> Pcg;
	std::unique_ptr<FSimulatedSplines> Splines;
};
