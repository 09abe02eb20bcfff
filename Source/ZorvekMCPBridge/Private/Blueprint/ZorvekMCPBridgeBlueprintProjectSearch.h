// blueprint_search_project: one call that finds where things are among the project's Blueprints
// before an agent reads graphs or scrapes files. Two phases, so that a call costs only what its
// types ask for:
//   1. The Asset Registry alone (no loading): every Blueprint asset under the package paths, its
//      name, folder, parent and native parent class tags, display name and description.
//   2. Content, only when a content type is asked for: each Blueprint under the paths is loaded
//      (in registry order, up to MaxBlueprints) and its snapshot read once for graphs, nodes
//      (titles, spawner ids, called functions, variable references), variables, components,
//      comments, custom events, interfaces and functions. A Blueprint that fails to load is a
//      partial failure; the search goes on.
// Every hit says what matched, where (asset path, graph, node GUID), a short context, and the next
// tool calls with ready arguments. Docs/Blueprints.md ("blueprint_search_project") describes the
// words, the ranking and the cost model.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

class IZorvekMCPBridgeEditorPort;

namespace ZorvekMCPBridgeBlueprintProjectSearch
{
	constexpr int32 DefaultLimit = 50;
	constexpr int32 MaxLimit = 500;
	constexpr int32 DefaultMaxBlueprints = 1000;
	inline constexpr const TCHAR* DefaultPackagePath = TEXT("/Game");

	// What a hit is, as the Types argument names it.
	enum class ESearchType : uint8
	{
		Blueprint,
		Graph,
		Node,
		Variable,
		Component,
		Comment,
		CustomEvent,
		Interface,
		Function,
		Count
	};

	// The word of a type ("custom_event"), and the whole list for messages.
	const TCHAR* GetSearchTypeWord(ESearchType Type);
	FString GetSearchTypeWordList();
	// A type word, without regard to case; false for an unknown word.
	bool FindSearchType(const FString& Word, ESearchType& OutType);

	inline uint32 GetSearchTypeBit(ESearchType Type)
	{
		return 1u << static_cast<uint32>(Type);
	}
	inline constexpr uint32 AllSearchTypes = (1u << static_cast<uint32>(ESearchType::Count)) - 1u;
	// Every type but blueprint needs the Blueprint loaded.
	inline constexpr uint32 ContentSearchTypes = AllSearchTypes & ~1u;

	// How well a text matched. Better values are larger.
	enum class EMatchQuality : uint8
	{
		None,
		// Every query word is somewhere in the text.
		Words,
		// The text begins with the query.
		Prefix,
		// The text is the query.
		Exact
	};
	const TCHAR* GetMatchQualityWord(EMatchQuality Quality);

	// The query as the matcher uses it: each word lower case, letters and digits only, and without
	// the leading "K2" of the engine's K2_ functions; Joined is the words one after another.
	struct FSearchQuery
	{
		TArray<FString> Words;
		FString Joined;

		// Words are split at blanks; a word with no letter or digit is dropped.
		static FSearchQuery Parse(const FString& Query);
		bool IsEmpty() const { return Words.IsEmpty(); }
	};

	// Matches texts against one query, reusing one buffer for the compact form of each text.
	class FSearchMatcher
	{
	public:
		explicit FSearchMatcher(const FSearchQuery& InQuery);

		// Exact when the compact text is the joined query, Prefix when it starts with it, Words when
		// it holds every word, else None.
		EMatchQuality Match(const FString& Text);

		// The compact form of a text ("K2_SetActorLocation" -> "setactorlocation").
		static void MakeCompact(const FString& Text, FString& OutCompact);

	private:
		const FSearchQuery& Query;
		FString Compact;
	};

	// The arguments of one search, validated.
	struct FSearchParams
	{
		FString Query;
		FSearchQuery ParsedQuery;
		// Content folders without a trailing slash; searched recursively.
		TArray<FString> PackagePaths;
		// GetSearchTypeBit of each type asked for.
		uint32 TypeMask = AllSearchTypes;
		int32 Limit = DefaultLimit;
		int32 MaxBlueprints = DefaultMaxBlueprints;

		bool WantsType(ESearchType Type) const { return (TypeMask & GetSearchTypeBit(Type)) != 0; }
		bool WantsContent() const { return (TypeMask & ContentSearchTypes) != 0; }
	};

	// Parses type words ("node", "Custom_Event"); an empty list means every type. False with the
	// message naming the word and the accepted words.
	bool ParseSearchTypes(const TArray<FString>& Words, uint32& OutTypeMask, FString& OutError);

	// Checks a content folder ("/Game/Blueprints", "/Game/Blueprints/" made "/Game/Blueprints");
	// false with the message for anything that is not a rooted folder path.
	bool NormalizeSearchPackagePath(const FString& PackagePath, FString& OutPackagePath, FString& OutError);

	// The class a ParentClass or NativeParentClass tag names: the export text
	// "/Script/CoreUObject.Class'/Script/Engine.Actor'" (or the short pre-5.1 form) gives
	// /Script/Engine.Actor; a bare path is taken as it is.
	FString ParseClassTag(const FString& TagValue);
	// The name agents know a class by: Actor for /Script/Engine.Actor, BP_Base for a Blueprint's
	// /Game/BP_Base.BP_Base_C.
	FString GetClassDisplayName(const FString& ClassPath);

	// Runs the search; the payload of the tool's answer. Never fails: Blueprints that do not load
	// are listed under "partial_failures".
	TSharedPtr<FJsonObject> SearchProject(IZorvekMCPBridgeEditorPort& Port, const FSearchParams& Params);
}
