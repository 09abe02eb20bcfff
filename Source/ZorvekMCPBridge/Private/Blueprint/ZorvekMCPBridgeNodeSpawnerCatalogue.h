// The node-spawner catalogue: the actions of the Blueprint editor's action menu that the node
// tools can place, searched by words and resolved from a human request ("print string", "add int",
// "cast to Character") to one canonical spawner id. The editor port lists the actions (the
// engine's action database, or the simulated editor's class library); this file indexes, ranks
// and resolves them. Every id is built by ZorvekMCPBridgeSpawnerIds, so an id found here is the
// id the graph reader prints for the node it makes.
//
// Docs/Blueprints.md ("Node-spawner catalogue") describes the words, the ranking, the resolution
// rules and the cache.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"
#include "Dom/JsonValue.h"
#include "EditorPort/ZorvekMCPBridgeBlueprintPort.h"

namespace ZorvekMCPBridgeNodeSpawnerCatalogue
{
	constexpr int32 DefaultFindLimit = 25;
	constexpr int32 MaxResolveCandidates = 10;
	// A resolution needs at least this score (every request word in the title or the names).
	constexpr int32 MinResolveScore = 61;
	// From this score on a resolution is "high" confidence (the title holds every request word).
	constexpr int32 HighConfidenceScore = 90;

	// The node kind word the graph reader prints for such a node ("function_call", "branch"...).
	const TCHAR* GetNodeKindWord(const FZorvekMCPBridgeNodeSpawnRequest& Request);

	// One action that matched a query, with its score (0-100) and why.
	struct FSpawnerMatch
	{
		FZorvekMCPBridgeNodeAction Action;
		FString SpawnerId;
		int32 Score = 0;
		// "exact_spawner_id", "exact_title", "title_words", "exact_name", "name_words", "keywords",
		// "category", "partial_words", or "listed" for an empty query.
		FString MatchReason;
		// Words of the title the request did not name (fewer is a closer match).
		int32 UncoveredTitleWords = 0;
		// Request words found anywhere, and how many words the request had.
		int32 MatchedQueryWords = 0;
		int32 QueryWordCount = 0;
	};

	// Every action that matched, best first, each spawner id once.
	struct FSpawnerSearch
	{
		TArray<FSpawnerMatch> Matches;
		int32 LibraryActionCount = 0;
		int32 BlueprintActionCount = 0;
	};

	// The Blueprint a search is scoped to: its handle, object path and its own classes (generated
	// and skeleton). Empty for an unscoped search.
	struct FSpawnerScope
	{
		FZorvekMCPBridgeObjectHandle Blueprint;
		FString BlueprintPath;
		TArray<FString> OwnClassPaths;

		static FSpawnerScope FromBlueprint(const FZorvekMCPBridgeBlueprintSnapshot& Snapshot, const FString& BlueprintPath);
	};

	// Ranks the actions against the query. The library actions (bFromBlueprint false) are indexed
	// once and kept while the list the port returns stays the same; the Blueprint's own actions
	// are indexed on every call. Library calls, events and variables of OwnClassPaths are left
	// out: the Blueprint's own actions name those members as its graphs do.
	FSpawnerSearch SearchActions(const TArray<FZorvekMCPBridgeNodeAction>& Actions, const FString& Query, const TArray<FString>& OwnClassPaths = TArray<FString>());

	// SearchActions over the port's catalogue, with the scoped Blueprint's own actions.
	FSpawnerSearch Search(const IZorvekMCPBridgeBlueprints& Blueprints, const FSpawnerScope& Scope, const FString& Query);

	// How many times the library index has been built (the cache is rebuilt only when the
	// library's actions change).
	int32 GetLibraryIndexBuildCount();

	// A request turned into one id, or refused with the reason.
	struct FSpawnerResolution
	{
		bool bResolved = false;
		FSpawnerMatch Best;
		// "high", "medium" (resolved); "low", "none" (refused).
		FString Confidence;
		// "no_candidates", "ambiguous_equal_score_candidates", "no_high_confidence_candidate".
		FString RejectedReason;
		TArray<FString> Reasons;
		// The best candidates (at most MaxResolveCandidates) and how many matched in all.
		TArray<FSpawnerMatch> Candidates;
		int32 CandidateCount = 0;
	};

	// The top candidate wins when it reaches MinResolveScore and nothing ties with it. Equal
	// scores tie unless exactly one of the two is the scoped Blueprint's own action, which wins.
	FSpawnerResolution Resolve(const FSpawnerSearch& Search);

	// One result entry: "spawner_id", "title", "category", "node_kind", "pure", "latent",
	// "source" ("library" or "blueprint"), "keywords", "tooltip", "score", "match_reason", and
	// with pins "pins" (name, direction, types, default, hidden, advanced) and "pin_count".
	TSharedPtr<FJsonObject> MakeSpawnerJson(const FSpawnerMatch& Match, const TArray<FZorvekMCPBridgeGraphPinSnapshot>* Pins);
	TSharedPtr<FJsonObject> MakeActionPinJson(const FZorvekMCPBridgeGraphPinSnapshot& Pin);

	// The answer of blueprint_find_node_spawners.
	TSharedPtr<FJsonObject> FindNodeSpawners(const IZorvekMCPBridgeBlueprints& Blueprints, const FSpawnerScope& Scope, const FString& Query, int32 Limit);

	// The answer of blueprint_resolve_node_spawner for a resolution made with that scope; the
	// best candidate carries its pins.
	TSharedPtr<FJsonObject> MakeResolutionJson(const IZorvekMCPBridgeBlueprints& Blueprints, const FSpawnerScope& Scope, const FString& Query,
		const FSpawnerResolution& Resolution);
}
