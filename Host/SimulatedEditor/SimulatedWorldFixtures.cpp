#include "SimulatedWorldFixtures.h"

#include "SimulatedEditor.h"
#include "SimulatedPcg.h"
#include "SimulatedViewport.h"
#include "SimulatedWorld.h"
#include "SimulatedWorldSpline.h"

#include "Dom/JsonValue.h"

namespace
{
	struct FSimWorldFixtureShape
	{
		const TCHAR* Word;
		ESimulatedMeshShape Shape;
	};

	const FSimWorldFixtureShape SimWorldFixtureShapes[] = {{TEXT("Box"), ESimulatedMeshShape::Box}, {TEXT("Sphere"), ESimulatedMeshShape::Sphere},
		{TEXT("Cylinder"), ESimulatedMeshShape::Cylinder}, {TEXT("Cone"), ESimulatedMeshShape::Cone}, {TEXT("Plane"), ESimulatedMeshShape::Plane}};

	const TCHAR* const SimWorldFixtureViewportTypes[] = {TEXT("OrthoXY"), TEXT("OrthoXZ"), TEXT("OrthoYZ"), TEXT("Perspective"), TEXT("OrthoFreelook"),
		TEXT("OrthoNegativeXY"), TEXT("OrthoNegativeXZ"), TEXT("OrthoNegativeYZ")};

	class FSimWorldFixtureReader
	{
	public:
		FSimWorldFixtureReader(FSimulatedEditor& InEditor, FString& InError)
			: Editor(InEditor)
			, World(InEditor.GetWorld())
			, Error(InError)
		{
		}

		bool ReadTypes(const TSharedPtr<FJsonObject>& Types, const FString& Source)
		{
			for (const TSharedPtr<FJsonValue>& Value : GetArray(Types, TEXT("meshes")))
			{
				const TSharedPtr<FJsonObject> Entry = Value->AsObject();
				const FString MeshPath = GetString(Entry, TEXT("mesh"));
				const FString Where = FString::Printf(TEXT("%s: world_types mesh %s"), *Source, *MeshPath);
				const FSimulatedObject* Mesh = Editor.FindObject(MeshPath);
				if (!Mesh)
				{
					return Fail(Where, TEXT("names no object of the fixture"));
				}
				FSimulatedMeshInfo Info;
				if (!ReadShape(GetString(Entry, TEXT("shape")), Info.Shape))
				{
					return Fail(Where, TEXT("needs a shape: Box, Sphere, Cylinder, Cone or Plane"));
				}
				FSimulatedVector Extent;
				if (!ReadVector(Entry, TEXT("extent"), FSimulatedVector(), Extent, Where))
				{
					return false;
				}
				Info.LocalBounds = FSimulatedBox::FromCenterAndExtent(FSimulatedVector(), Extent);
				World.SetMeshInfo(Mesh, Info);
			}
			for (const TSharedPtr<FJsonValue>& Value : GetArray(Types, TEXT("native_components")))
			{
				const TSharedPtr<FJsonObject> Entry = Value->AsObject();
				const FString ClassPath = GetString(Entry, TEXT("class"));
				const FString Where = FString::Printf(TEXT("%s: world_types native_components %s"), *Source, *ClassPath);
				const FSimulatedType* Class = Editor.FindTypeByPath(ClassPath);
				if (!World.IsActorClass(Class))
				{
					return Fail(Where, TEXT("names no actor class"));
				}
				std::vector<FSimulatedNativeComponent> Components;
				for (const TSharedPtr<FJsonValue>& ComponentValue : GetArray(Entry, TEXT("components")))
				{
					const TSharedPtr<FJsonObject> ComponentJson = ComponentValue->AsObject();
					FSimulatedNativeComponent Component;
					Component.Name = GetString(ComponentJson, TEXT("name"));
					Component.ClassPath = GetString(ComponentJson, TEXT("class"));
					Component.ParentName = GetString(ComponentJson, TEXT("parent"));
					if (Component.Name.IsEmpty() || !Editor.FindTypeByPath(Component.ClassPath))
					{
						return Fail(Where, FString::Printf(TEXT("has component '%s' without a name or a defined class"), *Component.Name));
					}
					if (!ReadValues(ComponentJson, Component.Values, Where))
					{
						return false;
					}
					if (ComponentJson->HasField(TEXT("bounds_extent")))
					{
						FSimulatedVector Extent;
						if (!ReadVector(ComponentJson, TEXT("bounds_extent"), FSimulatedVector(), Extent, Where))
						{
							return false;
						}
						Component.LocalBounds = FSimulatedBox::FromCenterAndExtent(FSimulatedVector(), Extent);
					}
					Components.push_back(Component);
				}
				World.SetNativeComponents(Class, std::move(Components));
			}
			for (const TSharedPtr<FJsonValue>& Value : GetArray(Types, TEXT("visualized_component_classes")))
			{
				const FSimulatedType* Class = Editor.FindTypeByPath(Value->AsString());
				if (!Class)
				{
					return Fail(Source, FString::Printf(TEXT("world_types visualizes %s, which is not defined"), *Value->AsString()));
				}
				World.AddVisualizedComponentClass(Class);
			}
			double SpriteSize = 0.0;
			if (Types->TryGetNumberField(TEXT("editor_sprite_size"), SpriteSize))
			{
				World.SetEditorSpriteSize(SpriteSize);
			}
			return true;
		}

		bool ReadWorld(const TSharedPtr<FJsonObject>& WorldJson, const FString& Source)
		{
			const FString Map = GetString(WorldJson, TEXT("map"));
			FString WorldError;
			if (!World.CreateEditorWorld(Map, WorldError))
			{
				return Fail(FString::Printf(TEXT("%s: world %s"), *Source, *Map), WorldError.LeftChop(1));
			}
			// The map is a saved asset the registry knows.
			Editor.RegisterAsset(World.GetWorldObject(), TArray<FZorvekMCPBridgeAssetTag>());
			const TSharedPtr<FJsonObject>* Plugin = nullptr;
			if (WorldJson->TryGetObjectField(TEXT("pcg_plugin"), Plugin))
			{
				FSimulatedPcgPluginState State;
				State.bInstalled = GetBool(*Plugin, TEXT("installed"), true);
				State.bEnabled = GetBool(*Plugin, TEXT("enabled"), true);
				State.bModuleExists = GetBool(*Plugin, TEXT("module_exists"), State.bInstalled);
				State.bModuleLoaded = GetBool(*Plugin, TEXT("module_loaded"), State.bEnabled);
				World.GetPcg().SetPluginState(State);
			}
			const TSharedPtr<FJsonObject>* ViewportJson = nullptr;
			if (WorldJson->TryGetObjectField(TEXT("viewport"), ViewportJson) && !ReadViewport(*ViewportJson, Source))
			{
				return false;
			}
			const TArray<TSharedPtr<FJsonValue>>& Actors = GetArray(WorldJson, TEXT("actors"));
			for (int32 Index = 0; Index < Actors.Num(); ++Index)
			{
				if (!ReadActor(Actors[Index]->AsObject(), FString::Printf(TEXT("%s: world actors[%d]"), *Source, Index)))
				{
					return false;
				}
			}
			return true;
		}

	private:
		bool ReadViewport(const TSharedPtr<FJsonObject>& Json, const FString& Source)
		{
			const FString Where = Source + TEXT(": world viewport");
			FSimulatedViewport& Viewport = World.GetViewport();
			double Width = Viewport.GetWidth();
			double Height = Viewport.GetHeight();
			Json->TryGetNumberField(TEXT("width"), Width);
			Json->TryGetNumberField(TEXT("height"), Height);
			Viewport.SetSize((int32)Width, (int32)Height);
			const FString Type = GetString(Json, TEXT("type"));
			if (!Type.IsEmpty())
			{
				int32 TypeValue = INDEX_NONE;
				for (int32 Index = 0; Index < (int32)UE_ARRAY_COUNT(SimWorldFixtureViewportTypes); ++Index)
				{
					TypeValue = Type.Equals(SimWorldFixtureViewportTypes[Index], ESearchCase::CaseSensitive) ? Index : TypeValue;
				}
				if (TypeValue == INDEX_NONE)
				{
					return Fail(Where, FString::Printf(TEXT("has an unknown type '%s'"), *Type));
				}
				Viewport.SetViewportType(TypeValue);
			}
			FSimulatedVector Location;
			FSimulatedVector Rotation;
			if (!ReadVector(Json, TEXT("location"), Viewport.GetViewLocation(), Location, Where) || !ReadVector(Json, TEXT("rotation"), FSimulatedVector(), Rotation, Where))
			{
				return false;
			}
			Viewport.SetPerspectiveView(Location, {Rotation.X, Rotation.Y, Rotation.Z});
			return true;
		}

		bool ReadActor(const TSharedPtr<FJsonObject>& Json, const FString& Where)
		{
			if (!Json.IsValid())
			{
				return Fail(Where, TEXT("is not an object"));
			}
			const FString ClassPath = GetString(Json, TEXT("class"));
			FSimulatedVector Location;
			FSimulatedVector Rotation;
			FSimulatedVector Scale;
			if (!ReadVector(Json, TEXT("location"), FSimulatedVector(), Location, Where) || !ReadVector(Json, TEXT("rotation"), FSimulatedVector(), Rotation, Where)
				|| !ReadVector(Json, TEXT("scale"), FSimulatedVector(1.0, 1.0, 1.0), Scale, Where))
			{
				return false;
			}
			FString SpawnError;
			FSimulatedActor* Actor = World.SpawnActorFromClass(Editor.FindTypeByPath(ClassPath), Location, {Rotation.X, Rotation.Y, Rotation.Z}, GetBool(Json, TEXT("transient"), false), SpawnError);
			if (!Actor)
			{
				return Fail(Where + TEXT(" ") + ClassPath, SpawnError.LeftChop(1));
			}
			World.SetActorScale3D(*Actor, Scale);
			const FString Label = GetString(Json, TEXT("label"));
			if (!Label.IsEmpty())
			{
				World.SetActorLabel(*Actor, Label);
			}
			TArray<FName> Tags;
			for (const TSharedPtr<FJsonValue>& Tag : GetArray(Json, TEXT("tags")))
			{
				Tags.Add(FName(*Tag->AsString()));
			}
			World.SetTags(*Actor, Tags);
			TMap<FString, FString> Values;
			if (!ReadValues(Json, Values, Where) || !ApplyValues(Actor->Object, Values, Where))
			{
				return false;
			}
			const TSharedPtr<FJsonObject>* Components = nullptr;
			if (Json->TryGetObjectField(TEXT("components"), Components))
			{
				for (const TPair<FString, TSharedPtr<FJsonValue>>& Entry : (*Components)->Values)
				{
					FSimulatedComponent* Component = FindComponent(*Actor, Entry.Key);
					if (!Component || !Entry.Value.IsValid() || !Entry.Value->AsObject().IsValid())
					{
						return Fail(Where, FString::Printf(TEXT("sets values of component '%s', which the actor does not have"), *Entry.Key));
					}
					TMap<FString, FString> ComponentValues;
					if (!ReadValueObject(Entry.Value->AsObject(), ComponentValues, Where) || !ApplyValues(Component->Object, ComponentValues, Where))
					{
						return false;
					}
					// A relative transform given as values moves the component.
					FSimulatedTransform Relative = World.GetRelativeTransform(*Component);
					const FSimulatedValue* RelativeLocation = World.FindValue(*Component->Object, TEXT("RelativeLocation"));
					const FSimulatedValue* RelativeRotation = World.FindValue(*Component->Object, TEXT("RelativeRotation"));
					const FSimulatedValue* RelativeScale = World.FindValue(*Component->Object, TEXT("RelativeScale3D"));
					if (RelativeLocation && RelativeRotation && RelativeScale && RelativeLocation->Items.size() == 3 && RelativeRotation->Items.size() == 3 && RelativeScale->Items.size() == 3)
					{
						Relative = FSimulatedTransform({RelativeRotation->Items[0].Real, RelativeRotation->Items[1].Real, RelativeRotation->Items[2].Real},
							{RelativeLocation->Items[0].Real, RelativeLocation->Items[1].Real, RelativeLocation->Items[2].Real},
							{RelativeScale->Items[0].Real, RelativeScale->Items[1].Real, RelativeScale->Items[2].Real});
						World.SetRelativeTransform(*Component, Relative);
					}
				}
			}
			const FString GraphPath = GetString(Json, TEXT("pcg_graph"));
			if (!GraphPath.IsEmpty())
			{
				FSimulatedObject* Graph = Editor.FindObject(GraphPath);
				FSimulatedComponent* PcgComponent = nullptr;
				for (const std::unique_ptr<FSimulatedComponent>& Component : Actor->Components)
				{
					if (Component->Object->Class->GetPathName() == TEXT("/Script/PCG.PCGComponent"))
					{
						PcgComponent = Component.get();
					}
				}
				if (!Graph || !PcgComponent || !World.GetPcg().SetComponentGraph(*PcgComponent->Object, Graph))
				{
					return Fail(Where, FString::Printf(TEXT("sets PCG graph %s, but the graph or the actor's PCG component is missing"), *GraphPath));
				}
			}
			if (GetBool(Json, TEXT("selected"), false))
			{
				World.SetActorSelectionState(*Actor, true);
			}
			return true;
		}

		static FSimulatedComponent* FindComponent(const FSimulatedActor& Actor, const FString& Name)
		{
			for (const std::unique_ptr<FSimulatedComponent>& Component : Actor.Components)
			{
				if (Component->Object->Name.Equals(Name, ESearchCase::IgnoreCase))
				{
					return Component.get();
				}
			}
			return nullptr;
		}

		bool ApplyValues(FSimulatedObject* Object, const TMap<FString, FString>& Values, const FString& Where)
		{
			for (const TPair<FString, FString>& Value : Values)
			{
				FString ValueError;
				if (!Editor.SetPropertyText(Object, Value.Key, Value.Value, ValueError))
				{
					return Fail(Where, FString::Printf(TEXT("value %s: %s"), *Value.Key, *ValueError.LeftChop(1)));
				}
			}
			return true;
		}

		bool ReadValues(const TSharedPtr<FJsonObject>& Json, TMap<FString, FString>& OutValues, const FString& Where)
		{
			const TSharedPtr<FJsonObject>* Values = nullptr;
			return !Json->TryGetObjectField(TEXT("values"), Values) || ReadValueObject(*Values, OutValues, Where);
		}

		bool ReadValueObject(const TSharedPtr<FJsonObject>& Values, TMap<FString, FString>& OutValues, const FString& Where)
		{
			for (const TPair<FString, TSharedPtr<FJsonValue>>& Value : Values->Values)
			{
				FString Text;
				if (!Value.Value.IsValid() || !Value.Value->TryGetString(Text))
				{
					return Fail(Where, FString::Printf(TEXT("gives %s a value that is not text, a number or a bool"), *Value.Key));
				}
				OutValues.Add(Value.Key, Text);
			}
			return true;
		}

		bool ReadVector(const TSharedPtr<FJsonObject>& Json, const TCHAR* Key, const FSimulatedVector& Default, FSimulatedVector& OutVector, const FString& Where)
		{
			OutVector = Default;
			if (!Json->HasField(Key))
			{
				return true;
			}
			const TArray<TSharedPtr<FJsonValue>>* Values = nullptr;
			if (!Json->TryGetArrayField(Key, Values) || Values->Num() != 3)
			{
				return Fail(Where, FString::Printf(TEXT("needs %s as three numbers"), Key));
			}
			OutVector = {(*Values)[0]->AsNumber(), (*Values)[1]->AsNumber(), (*Values)[2]->AsNumber()};
			return true;
		}

		static bool ReadShape(const FString& Word, ESimulatedMeshShape& OutShape)
		{
			for (const FSimWorldFixtureShape& Shape : SimWorldFixtureShapes)
			{
				if (Word.Equals(Shape.Word, ESearchCase::CaseSensitive))
				{
					OutShape = Shape.Shape;
					return true;
				}
			}
			return false;
		}

		static const TArray<TSharedPtr<FJsonValue>>& GetArray(const TSharedPtr<FJsonObject>& Object, const TCHAR* Key)
		{
			static const TArray<TSharedPtr<FJsonValue>> Empty;
			const TArray<TSharedPtr<FJsonValue>>* Values = nullptr;
			return Object.IsValid() && Object->TryGetArrayField(Key, Values) ? *Values : Empty;
		}

		static FString GetString(const TSharedPtr<FJsonObject>& Object, const TCHAR* Key)
		{
			FString Value;
			if (Object.IsValid())
			{
				Object->TryGetStringField(Key, Value);
			}
			return Value;
		}

		static bool GetBool(const TSharedPtr<FJsonObject>& Object, const TCHAR* Key, bool Default)
		{
			bool Value = Default;
			if (Object.IsValid())
			{
				Object->TryGetBoolField(Key, Value);
			}
			return Value;
		}

		bool Fail(const FString& Where, const FString& Message)
		{
			Error = FString::Printf(TEXT("%s %s."), *Where, *Message);
			return false;
		}

		FSimulatedEditor& Editor;
		FSimulatedWorld& World;
		FString& Error;
	};
}

bool SimulatedWorldFixtures::Load(FSimulatedEditor& Editor, const TArray<TPair<TSharedPtr<FJsonObject>, FString>>& Documents, FString& OutError)
{
	FSimWorldFixtureReader Reader(Editor, OutError);
	bool bHasTypes = false;
	for (const TPair<TSharedPtr<FJsonObject>, FString>& Document : Documents)
	{
		const TSharedPtr<FJsonObject>* Types = nullptr;
		if (Document.Key->TryGetObjectField(TEXT("world_types"), Types))
		{
			bHasTypes = true;
			if (!Reader.ReadTypes(*Types, Document.Value))
			{
				return false;
			}
		}
	}
	if (bHasTypes)
	{
		Editor.GetWorld().GetPcg().BindClassFunctions();
		Editor.GetWorld().GetSplines().RegisterClass(Editor);
	}
	for (const TPair<TSharedPtr<FJsonObject>, FString>& Document : Documents)
	{
		const TSharedPtr<FJsonObject>* WorldJson = nullptr;
		if (Document.Key->TryGetObjectField(TEXT("world"), WorldJson) && !Reader.ReadWorld(*WorldJson, Document.Value))
		{
			return false;
		}
	}
	return true;
}
