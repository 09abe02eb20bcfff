#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "EditorPort/ZorvekMCPBridgeObjectHandle.h"

class IZorvekMCPBridgeAssetRegistry;
class IZorvekMCPBridgeObjects;

namespace ZorvekMCPBridgeAssets
{
	// The limit every tool but unreal_resolve_asset resolves with.
	constexpr int32 DefaultResolveLimit = 10;
	inline constexpr const TCHAR* BlueprintClassPath = TEXT("/Script/Engine.Blueprint");

	// Package paths as the engine's FPackageName spells them, kept here because portable code
	// does not link CoreUObject: "/Game/A/B.B:Sub" -> "/Game/A/B" (up to the first "."), and
	// "/Game/A/B" -> "B" (after the last "/").
	FString ObjectPathToPackageName(const FString& ObjectPath);
	FString GetShortPackageName(const FString& LongPackageName);
	// "/Game/A/BP_X" -> "/Game/A/BP_X.BP_X": how tools load a resolved asset.
	FString MakeAssetObjectPath(const FString& PackagePath);

	// Turns what a client typed into one package path. A query that begins with "/" is trusted
	// as it stands (object paths are cut to their package); anything else is a case-insensitive
	// substring search over the asset names and package names under /Game, in registry order,
	// with no ranking; the first hit wins. Only the type "Blueprint" (any case) restricts the
	// class, and only to Blueprint itself, not its subclasses. The limit is tested after a
	// candidate is added, so a limit of 0 or below still yields one candidate.
	// Returns the resolution object ("query", "type", "best_asset_path", "candidates", "count",
	// "error"); OutBestPath is empty and OutError set when nothing resolved.
	TSharedPtr<FJsonObject> ResolveAssetQuery(const IZorvekMCPBridgeAssetRegistry& Registry, const FString& Query, const FString& Type, int32 Limit, FString& OutBestPath, FString& OutError);

	// Writes "object_path", "package_path", "name", "class_path" and "class_name" of the object
	// into Target; an invalid object leaves Target untouched.
	void MakeObjectIdentityJson(const TSharedPtr<FJsonObject>& Target, const IZorvekMCPBridgeObjects& Objects, FZorvekMCPBridgeObjectHandle Object);
	TSharedPtr<FJsonObject> MakeObjectIdentityJson(const IZorvekMCPBridgeObjects& Objects, FZorvekMCPBridgeObjectHandle Object);

	// Trims, lower-cases and strips the filler words and separators people put around a
	// material expression class name, so "MaterialExpressionAdd", "Material Expression Add" and
	// "add node" all read "add".
	FString NormalizeClassQuery(const FString& Query);

	// Scores a class catalogue entry ("class_name", "display_name", optional "aliases") against
	// a query. The tests run in a fixed order and the first that applies decides, so a
	// display-name hit (92) is taken before an alias hit (94), and a class or display-name
	// substring (55) before an alias substring (58). An empty normalised query scores 1.
	int32 ScoreClassNameMatch(const TSharedPtr<FJsonObject>& Entry, const FString& Query, FString& OutMatchKind);
}
