#include "World/ZorvekMCPBridgeActorReadback.h"

#include "Dom/JsonValue.h"

namespace
{
	FZorvekMCPBridgeVector WorldReadbackMidpoint(const FZorvekMCPBridgeVector& A, const FZorvekMCPBridgeVector& B)
	{
		return {(A.X + B.X) * 0.5, (A.Y + B.Y) * 0.5, (A.Z + B.Z) * 0.5};
	}

	FZorvekMCPBridgeVector WorldReadbackHalfSpan(const FZorvekMCPBridgeVector& Min, const FZorvekMCPBridgeVector& Max)
	{
		return {(Max.X - Min.X) * 0.5, (Max.Y - Min.Y) * 0.5, (Max.Z - Min.Z) * 0.5};
	}

	bool WorldReadbackMatchesWhole(const FString& Candidate, const FString& Query)
	{
		return Candidate.Equals(Query, ESearchCase::IgnoreCase);
	}
}

bool ZorvekMCPBridgeActorReadback::IsReproActor(const TArray<FName>& Tags)
{
	const FName Bridge(BridgeTag);
	const FName Repro(ReproTag);
	for (const FName& Tag : Tags)
	{
		if (Tag == Bridge || Tag == Repro)
		{
			return true;
		}
	}
	return false;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeActorReadback::MakeVectorJson(const FZorvekMCPBridgeVector& Vector)
{
	TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
	Json->SetNumberField(TEXT("x"), Vector.X);
	Json->SetNumberField(TEXT("y"), Vector.Y);
	Json->SetNumberField(TEXT("z"), Vector.Z);
	return Json;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeActorReadback::MakeRotatorJson(const FZorvekMCPBridgeRotator& Rotator)
{
	TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
	Json->SetNumberField(TEXT("pitch"), Rotator.Pitch);
	Json->SetNumberField(TEXT("yaw"), Rotator.Yaw);
	Json->SetNumberField(TEXT("roll"), Rotator.Roll);
	return Json;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeActorReadback::MakeTransformJson(const FZorvekMCPBridgeTransform& Transform)
{
	TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
	Json->SetObjectField(TEXT("location"), MakeVectorJson(Transform.Location));
	Json->SetObjectField(TEXT("rotation"), MakeRotatorJson(Transform.Rotation));
	Json->SetObjectField(TEXT("scale"), MakeVectorJson(Transform.Scale));
	return Json;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeActorReadback::MakeBoundsJson(const FZorvekMCPBridgeBox& Box)
{
	TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
	Json->SetObjectField(TEXT("min"), MakeVectorJson(Box.Min));
	Json->SetObjectField(TEXT("max"), MakeVectorJson(Box.Max));
	Json->SetObjectField(TEXT("center"), MakeVectorJson(WorldReadbackMidpoint(Box.Min, Box.Max)));
	Json->SetObjectField(TEXT("extent"), MakeVectorJson(WorldReadbackHalfSpan(Box.Min, Box.Max)));
	return Json;
}

FZorvekMCPBridgeBox ZorvekMCPBridgeActorReadback::GetActorBoundsBox(const FZorvekMCPBridgeActorSnapshot& Actor)
{
	FZorvekMCPBridgeBox Box = Actor.Bounds;
	Box.bIsValid = true;
	return Box;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeActorReadback::MakeComponentJson(const FZorvekMCPBridgeActorComponentSnapshot& Component)
{
	if (!Component.bIsSceneComponent)
	{
		return nullptr;
	}
	TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
	Json->SetStringField(TEXT("name"), Component.Name);
	Json->SetStringField(TEXT("class_path"), Component.ClassPath);
	Json->SetObjectField(TEXT("world_transform"), MakeTransformJson(Component.WorldTransform));
	Json->SetObjectField(TEXT("relative_transform"), MakeTransformJson(Component.RelativeTransform));
	if (Component.bIsPrimitiveComponent)
	{
		Json->SetObjectField(TEXT("world_bounds"), MakeBoundsJson(Component.WorldBounds));
	}
	if (Component.bIsStaticMeshComponent)
	{
		Json->SetStringField(TEXT("static_mesh"), Component.StaticMeshPath);
	}
	return Json;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeActorReadback::MakeActorReadback(const FZorvekMCPBridgeActorSnapshot& Actor, bool bSelected)
{
	TSharedPtr<FJsonObject> Json = MakeShared<FJsonObject>();
	Json->SetStringField(TEXT("name"), Actor.Entry.Name);
	Json->SetStringField(TEXT("label"), Actor.Entry.Label);
	Json->SetStringField(TEXT("path"), Actor.Entry.Path);
	Json->SetStringField(TEXT("class_path"), Actor.ClassPath);
	// An actor without a root component has no transform of its own: it reads as the identity.
	Json->SetObjectField(TEXT("transform"), MakeTransformJson(Actor.bHasRootComponent ? Actor.RootTransform : FZorvekMCPBridgeTransform()));
	Json->SetObjectField(TEXT("bounds"), MakeBoundsJson(GetActorBoundsBox(Actor)));

	TArray<TSharedPtr<FJsonValue>> Tags;
	for (const FName& Tag : Actor.Entry.Tags)
	{
		Tags.Add(MakeShared<FJsonValueString>(Tag.ToString()));
	}
	Json->SetArrayField(TEXT("tags"), Tags);

	TArray<TSharedPtr<FJsonValue>> Components;
	for (const FZorvekMCPBridgeActorComponentSnapshot& Component : Actor.Components)
	{
		if (const TSharedPtr<FJsonObject> ComponentJson = MakeComponentJson(Component))
		{
			Components.Add(MakeShared<FJsonValueObject>(ComponentJson));
		}
	}
	Json->SetArrayField(TEXT("components"), Components);
	Json->SetBoolField(TEXT("selected"), bSelected);
	Json->SetBoolField(TEXT("zorvek_repro_actor"), IsReproActor(Actor.Entry.Tags));
	return Json;
}

TSharedPtr<FJsonObject> ZorvekMCPBridgeActorReadback::ReadActorReadback(const IZorvekMCPBridgeWorld& World, FZorvekMCPBridgeObjectHandle Actor, bool bSelected)
{
	FZorvekMCPBridgeActorSnapshot Snapshot;
	if (!World.ReadActor(Actor, Snapshot))
	{
		return nullptr;
	}
	return MakeActorReadback(Snapshot, bSelected);
}

bool ZorvekMCPBridgeActorReadback::MatchesFilter(const FZorvekMCPBridgeActorEntry& Actor, const FString& Filter)
{
	if (Filter.IsEmpty())
	{
		return true;
	}
	return Actor.Name.Contains(Filter, ESearchCase::IgnoreCase) || Actor.Label.Contains(Filter, ESearchCase::IgnoreCase)
		|| Actor.Path.Contains(Filter, ESearchCase::IgnoreCase);
}

bool ZorvekMCPBridgeActorReadback::FindActor(const IZorvekMCPBridgeWorld& World, const FString& ActorNameOrLabel, FZorvekMCPBridgeActorEntry& OutActor)
{
	const FString Query = ActorNameOrLabel.TrimStartAndEnd();
	if (Query.IsEmpty() || !World.IsActorSubsystemAvailable())
	{
		return false;
	}
	for (const FZorvekMCPBridgeActorEntry& Actor : World.GetAllLevelActors())
	{
		if (!Actor.Actor.IsValid())
		{
			continue;
		}
		if (WorldReadbackMatchesWhole(Actor.Name, Query) || WorldReadbackMatchesWhole(Actor.Label, Query) || WorldReadbackMatchesWhole(Actor.Path, Query))
		{
			OutActor = Actor;
			return true;
		}
	}
	return false;
}

FString ZorvekMCPBridgeActorReadback::MakeActorNotFoundMessage(const FString& ActorNameOrLabel)
{
	return FString::Printf(TEXT("No editor actor found for '%s'."), *ActorNameOrLabel);
}
