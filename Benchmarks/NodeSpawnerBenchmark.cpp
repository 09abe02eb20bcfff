// The node-spawner catalogue on the whole simulated engine library plus a Blueprint with 500
// members (300 variables, 150 functions, 50 custom events): blueprint_find_node_spawners and
// blueprint_resolve_node_spawner through the server, as a client call runs them, and the search
// alone (the port's action list, the cached library index, the Blueprint's own actions indexed
// anew, ranking). The goal is a search under 20 ms of game-thread time.
#include "Blueprint/ZorvekMCPBridgeNodeSpawnerCatalogue.h"
#include "Server/ZorvekMCPBridgeServer.h"
#include "SimulatedEditorPort.h"

#include <benchmark/benchmark.h>

namespace
{
	const TCHAR* const SpawnerBenchmarkBlueprintPath = TEXT("/Game/Bench/BP_Members.BP_Members");
	constexpr int32 SpawnerBenchmarkVariables = 300;
	constexpr int32 SpawnerBenchmarkFunctions = 150;
	constexpr int32 SpawnerBenchmarkCustomEvents = 50;

	struct FSpawnerBenchmarkProject
	{
		TSharedPtr<FSimulatedEditorPort> Port;
		TSharedPtr<FZorvekMCPBridgeServer, ESPMode::ThreadSafe> Server;
		FZorvekMCPBridgeObjectHandle Blueprint;
	};

	bool CallSpawnerBenchmarkTool(FZorvekMCPBridgeServer& Server, const TCHAR* Tool, const TSharedPtr<FJsonObject>& Arguments)
	{
		const TSharedPtr<FJsonObject> Result = Server.ExecuteTool(Tool, Arguments);
		return Result.IsValid() && !Result->GetBoolField(TEXT("isError"));
	}

	TSharedPtr<FJsonObject> MakeSpawnerBenchmarkArguments(const TCHAR* NameKey, const FString& Name)
	{
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetStringField(TEXT("BlueprintNameOrPath"), SpawnerBenchmarkBlueprintPath);
		Arguments->SetStringField(NameKey, Name);
		return Arguments;
	}

	// The sample project's engine library and one Actor Blueprint given its members through the
	// member tools, as a client would.
	FSpawnerBenchmarkProject MakeSpawnerBenchmarkProject()
	{
		TSharedPtr<FSimulatedEditor> Editor = MakeShared<FSimulatedEditor>();
		FString Error;
		if (!Editor->LoadProjectFile(GetSimulatedSampleProjectFile(), Error))
		{
			return FSpawnerBenchmarkProject();
		}
		FSpawnerBenchmarkProject Project;
		Project.Port = MakeShared<FSimulatedEditorPort>(Editor);
		Project.Server = MakeShared<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>();
		Project.Server->SetEditorPort(Project.Port);
		FZorvekMCPBridgeServer& Server = *Project.Server;

		TSharedPtr<FJsonObject> Create = MakeShared<FJsonObject>();
		Create->SetStringField(TEXT("PackagePath"), TEXT("/Game/Bench"));
		Create->SetStringField(TEXT("AssetName"), TEXT("BP_Members"));
		bool bBuilt = CallSpawnerBenchmarkTool(Server, TEXT("blueprint_create"), Create);
		for (int32 Index = 0; bBuilt && Index < SpawnerBenchmarkVariables; ++Index)
		{
			TSharedPtr<FJsonObject> Variable = MakeSpawnerBenchmarkArguments(TEXT("VarName"), FString::Printf(TEXT("Stat_Value_%d"), Index));
			Variable->SetStringField(TEXT("Type"), Index % 2 ? TEXT("float") : TEXT("int"));
			bBuilt = CallSpawnerBenchmarkTool(Server, TEXT("blueprint_add_variable"), Variable);
		}
		for (int32 Index = 0; bBuilt && Index < SpawnerBenchmarkFunctions; ++Index)
		{
			bBuilt = CallSpawnerBenchmarkTool(Server, TEXT("blueprint_create_function"), MakeSpawnerBenchmarkArguments(TEXT("FunctionName"), FString::Printf(TEXT("Apply_Rule_%d"), Index)));
		}
		for (int32 Index = 0; bBuilt && Index < SpawnerBenchmarkCustomEvents; ++Index)
		{
			bBuilt = CallSpawnerBenchmarkTool(Server, TEXT("blueprint_add_custom_event"), MakeSpawnerBenchmarkArguments(TEXT("EventName"), FString::Printf(TEXT("On_Signal_%d"), Index)));
		}
		if (!bBuilt)
		{
			return FSpawnerBenchmarkProject();
		}
		Project.Blueprint = Project.Port->GetObjects().FindObject(SpawnerBenchmarkBlueprintPath);
		return Project;
	}

	const FSpawnerBenchmarkProject& GetSpawnerBenchmarkProject()
	{
		static const FSpawnerBenchmarkProject Project = MakeSpawnerBenchmarkProject();
		return Project;
	}

	// The tool as a client calls it: search, pins of the results, the JSON answer and its text.
	void RunSpawnerBenchmarkTool(benchmark::State& State, const TCHAR* Tool, const TCHAR* Query, bool bScoped, int32 Limit)
	{
		const FSpawnerBenchmarkProject& Project = GetSpawnerBenchmarkProject();
		if (!Project.Blueprint.IsValid())
		{
			State.SkipWithError("the benchmark Blueprint could not be built");
			return;
		}
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetStringField(TEXT("Query"), Query);
		if (bScoped)
		{
			Arguments->SetStringField(TEXT("BlueprintNameOrPath"), SpawnerBenchmarkBlueprintPath);
		}
		if (Limit > 0)
		{
			Arguments->SetNumberField(TEXT("Limit"), Limit);
		}
		for (auto _ : State)
		{
			const TSharedPtr<FJsonObject> Result = Project.Server->ExecuteTool(Tool, Arguments);
			if (!Result.IsValid() || Result->GetBoolField(TEXT("isError")))
			{
				State.SkipWithError("the tool failed");
				return;
			}
			benchmark::DoNotOptimize(Result);
		}
	}

	void BM_FindSpawnersScoped(benchmark::State& State)
	{
		RunSpawnerBenchmarkTool(State, TEXT("blueprint_find_node_spawners"), TEXT("print string"), true, 25);
	}

	void BM_FindSpawnersScopedMemberWords(benchmark::State& State)
	{
		// "stat value" names all 600 variable actions: the ranking's worst case.
		RunSpawnerBenchmarkTool(State, TEXT("blueprint_find_node_spawners"), TEXT("get stat value"), true, 25);
	}

	void BM_FindSpawnersUnscoped(benchmark::State& State)
	{
		RunSpawnerBenchmarkTool(State, TEXT("blueprint_find_node_spawners"), TEXT("add int"), false, 25);
	}

	void BM_ResolveSpawnerScoped(benchmark::State& State)
	{
		RunSpawnerBenchmarkTool(State, TEXT("blueprint_resolve_node_spawner"), TEXT("get Stat_Value_250"), true, 0);
	}

	// The search alone: what a find or resolve costs before pins and JSON.
	void BM_CatalogueSearchScoped(benchmark::State& State)
	{
		const FSpawnerBenchmarkProject& Project = GetSpawnerBenchmarkProject();
		if (!Project.Blueprint.IsValid())
		{
			State.SkipWithError("the benchmark Blueprint could not be built");
			return;
		}
		const IZorvekMCPBridgeBlueprints& Blueprints = Project.Port->GetBlueprints();
		FZorvekMCPBridgeBlueprintSnapshot Snapshot;
		Project.Port->GetBlueprints().ReadBlueprint(Project.Blueprint, Snapshot);
		const ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerScope Scope = ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerScope::FromBlueprint(Snapshot, SpawnerBenchmarkBlueprintPath);
		int64 Actions = 0;
		for (auto _ : State)
		{
			const ZorvekMCPBridgeNodeSpawnerCatalogue::FSpawnerSearch Found = ZorvekMCPBridgeNodeSpawnerCatalogue::Search(Blueprints, Scope, TEXT("print string"));
			Actions = Found.LibraryActionCount + Found.BlueprintActionCount;
			benchmark::DoNotOptimize(Found.Matches.Num());
		}
		State.counters["actions"] = static_cast<double>(Actions);
	}
}

BENCHMARK(BM_FindSpawnersScoped)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindSpawnersScopedMemberWords)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindSpawnersUnscoped)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ResolveSpawnerScoped)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CatalogueSearchScoped)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
