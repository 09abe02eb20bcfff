// blueprint_search_project through the server over a simulated project of 2,000 Actor Blueprints
// in 20 folders, each with two variables and an event graph of 200 nodes (the three ghost events
// beside branches, sequences, Print String and math calls, variable gets and sets). One Blueprint
// in 200 also holds a custom event OnTreasureFound, so "treasure" hits ten nodes. The project is
// built once through the simulated editor port, outside the timed loops.
#include "Blueprint/ZorvekMCPBridgeBlueprintProjectSearch.h"
#include "Server/ZorvekMCPBridgeServer.h"
#include "SimulatedEditorPort.h"

#include <benchmark/benchmark.h>

namespace
{
	constexpr int32 BenchmarkBlueprintCount = 2000;
	constexpr int32 BenchmarkFolderCount = 20;
	// The three ghost events of a new Actor Blueprint count towards these.
	constexpr int32 BenchmarkNodesPerGraph = 200;
	constexpr int32 BenchmarkTreasureEvery = 200;

	struct FSearchProject
	{
		TSharedPtr<FSimulatedEditorPort> Port;
		TSharedPtr<FZorvekMCPBridgeServer, ESPMode::ThreadSafe> Server;
		int64 NodeCount = 0;
	};

	FString MakeBenchmarkPackage(int32 Index)
	{
		return FString::Printf(TEXT("/Game/Bench/Area_%02d/BP_Bench_%04d"), Index % BenchmarkFolderCount, Index);
	}

	FZorvekMCPBridgeNodeSpawnRequest MakeBenchmarkRequest(int32 NodeIndex)
	{
		FZorvekMCPBridgeNodeSpawnRequest Request;
		switch (NodeIndex % 6)
		{
		case 0:
			Request.Kind = EZorvekMCPBridgeNodeSpawnKind::Branch;
			break;
		case 1:
			Request.Kind = EZorvekMCPBridgeNodeSpawnKind::Sequence;
			break;
		case 2:
			Request.Kind = EZorvekMCPBridgeNodeSpawnKind::CallFunction;
			Request.ClassPath = TEXT("/Script/Engine.KismetSystemLibrary");
			Request.FunctionName = TEXT("PrintString");
			break;
		case 3:
			Request.Kind = EZorvekMCPBridgeNodeSpawnKind::CallFunction;
			Request.ClassPath = TEXT("/Script/Engine.KismetMathLibrary");
			Request.FunctionName = TEXT("Subtract_DoubleDouble");
			break;
		case 4:
			Request.Kind = EZorvekMCPBridgeNodeSpawnKind::VariableGet;
			Request.VariableName = TEXT("Speed");
			break;
		default:
			Request.Kind = EZorvekMCPBridgeNodeSpawnKind::VariableSet;
			Request.VariableName = TEXT("HitCount");
			break;
		}
		return Request;
	}

	FSearchProject MakeSearchProject()
	{
		FString Directory = GetSimulatedSampleProjectFile();
		int32 SlashIndex = INDEX_NONE;
		Directory.FindLastChar(TEXT('/'), SlashIndex);
		Directory.LeftInline(SlashIndex);
		FString Assets;
		for (int32 Index = 0; Index < BenchmarkBlueprintCount; ++Index)
		{
			Assets += FString::Printf(TEXT("%s{\"package\": \"%s\", \"blueprint\": {\"parent\": \"/Script/Engine.Actor\", \"variables\": [{\"name\": \"Speed\", \"type\": \"float\"}, {\"name\": \"HitCount\", \"type\": \"int32\"}]}}"),
				Index == 0 ? TEXT("") : TEXT(","), *MakeBenchmarkPackage(Index));
		}
		const FString Json = FString(TEXT("{\"include\": [\"BlueprintEngineTypes.json\"], \"assets\": [")) + Assets + TEXT("]}");
		TSharedPtr<FSimulatedEditor> Editor = MakeShared<FSimulatedEditor>();
		FString Error;
		if (!Editor->LoadProjectJson(Json, Directory, Error))
		{
			return FSearchProject();
		}
		FSearchProject Project;
		Project.Port = MakeShared<FSimulatedEditorPort>(Editor);
		IZorvekMCPBridgeBlueprints& Blueprints = Project.Port->GetBlueprints();
		for (int32 Index = 0; Index < BenchmarkBlueprintCount; ++Index)
		{
			const FString Package = MakeBenchmarkPackage(Index);
			int32 NameIndex = INDEX_NONE;
			Package.FindLastChar(TEXT('/'), NameIndex);
			const FZorvekMCPBridgeObjectHandle Blueprint = Project.Port->GetObjects().FindObject(Package + TEXT(".") + Package.RightChop(NameIndex + 1));
			FZorvekMCPBridgeBlueprintSnapshot Snapshot;
			if (!Blueprints.ReadBlueprint(Blueprint, Snapshot) || Snapshot.Graphs.IsEmpty())
			{
				return FSearchProject();
			}
			int32 NodeCount = 0;
			for (const FZorvekMCPBridgeGraphSnapshot& Graph : Snapshot.Graphs)
			{
				NodeCount += Graph.Nodes.Num();
			}
			for (int32 NodeIndex = 0; NodeCount < BenchmarkNodesPerGraph; ++NodeIndex, ++NodeCount)
			{
				FZorvekMCPBridgeNodeSpawnRequest Request = MakeBenchmarkRequest(NodeIndex);
				if (NodeIndex == 0 && Index % BenchmarkTreasureEvery == 0)
				{
					Request.Kind = EZorvekMCPBridgeNodeSpawnKind::CustomEvent;
					Request.EventName = TEXT("OnTreasureFound");
				}
				const FZorvekMCPBridgeNodeSpawnResult Spawned = Blueprints.SpawnNode(Blueprint, TEXT("EventGraph"), Request, (NodeIndex % 20) * 300, (NodeIndex / 20) * 200, {});
				if (Spawned.Failure != EZorvekMCPBridgeNodeSpawnFailure::None)
				{
					return FSearchProject();
				}
			}
			Project.NodeCount += NodeCount;
		}
		Project.Server = MakeShared<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>();
		Project.Server->SetEditorPort(Project.Port);
		return Project;
	}

	// Built once for every benchmark of the program.
	const FSearchProject& GetSearchProject()
	{
		static const FSearchProject Project = MakeSearchProject();
		return Project;
	}

	void RunSearch(benchmark::State& State, const TSharedPtr<FJsonObject>& Arguments, int32 ExpectedResults)
	{
		const FSearchProject& Project = GetSearchProject();
		if (!Project.Server.IsValid())
		{
			State.SkipWithError("the benchmark project could not be built");
			return;
		}
		int64 LoadedCount = 0;
		for (auto _ : State)
		{
			const TSharedPtr<FJsonObject> Result = Project.Server->ExecuteTool(TEXT("blueprint_search_project"), Arguments);
			State.PauseTiming();
			const TSharedPtr<FJsonObject> Payload = Result->GetObjectField(TEXT("structuredContent"));
			if (Result->GetBoolField(TEXT("isError")) || Payload->GetIntegerField(TEXT("result_count")) != ExpectedResults)
			{
				State.ResumeTiming();
				State.SkipWithError("unexpected answer");
				break;
			}
			LoadedCount = Payload->GetIntegerField(TEXT("loaded_blueprint_count"));
			State.ResumeTiming();
		}
		State.counters["blueprints_read"] = static_cast<double>(LoadedCount);
		State.counters["nodes_in_project"] = static_cast<double>(Project.NodeCount);
	}

	// A word in ten custom events of the whole project: every Blueprint is opened and read.
	void BM_SearchContentWholeProject(benchmark::State& State)
	{
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetStringField(TEXT("Query"), TEXT("treasure"));
		Arguments->SetNumberField(TEXT("MaxBlueprints"), BenchmarkBlueprintCount);
		RunSearch(State, Arguments, BenchmarkBlueprintCount / BenchmarkTreasureEvery);
	}

	// The same word with the default cap of 1,000 Blueprints: half the project is read.
	void BM_SearchContentDefaultCap(benchmark::State& State)
	{
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetStringField(TEXT("Query"), TEXT("treasure"));
		RunSearch(State, Arguments, ZorvekMCPBridgeBlueprintProjectSearch::DefaultMaxBlueprints / BenchmarkTreasureEvery);
	}

	// The same word in one folder of 100 Blueprints.
	void BM_SearchContentOneFolder(benchmark::State& State)
	{
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetStringField(TEXT("Query"), TEXT("treasure"));
		Arguments->SetStringField(TEXT("PackagePaths"), TEXT("/Game/Bench/Area_00"));
		RunSearch(State, Arguments, BenchmarkBlueprintCount / BenchmarkTreasureEvery);
	}

	// A name from the registry alone: nothing is opened.
	void BM_SearchNamesOnly(benchmark::State& State)
	{
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetStringField(TEXT("Query"), TEXT("BP_Bench_1234"));
		Arguments->SetStringField(TEXT("Types"), TEXT("blueprint"));
		RunSearch(State, Arguments, 1);
	}

	// What the content phase costs before any matching: loading each Blueprint and reading its
	// snapshot once.
	void BM_ReadSnapshotsOnly(benchmark::State& State)
	{
		const FSearchProject& Project = GetSearchProject();
		if (!Project.Server.IsValid())
		{
			State.SkipWithError("the benchmark project could not be built");
			return;
		}
		for (auto _ : State)
		{
			int64 Nodes = 0;
			for (int32 Index = 0; Index < BenchmarkBlueprintCount; ++Index)
			{
				const FString Package = MakeBenchmarkPackage(Index);
				int32 NameIndex = INDEX_NONE;
				Package.FindLastChar(TEXT('/'), NameIndex);
				FZorvekMCPBridgeBlueprintSnapshot Snapshot;
				Project.Port->GetBlueprints().ReadBlueprint(Project.Port->GetObjects().LoadObject(Package + TEXT(".") + Package.RightChop(NameIndex + 1)), Snapshot);
				for (const FZorvekMCPBridgeGraphSnapshot& Graph : Snapshot.Graphs)
				{
					Nodes += Graph.Nodes.Num();
				}
			}
			benchmark::DoNotOptimize(Nodes);
		}
	}

	// A word in every node's spawner id (Print String's library), the limit of 50 kept while
	// 66,000 nodes match: the ranking's cost when nearly everything hits.
	void BM_SearchContentManyHits(benchmark::State& State)
	{
		TSharedPtr<FJsonObject> Arguments = MakeShared<FJsonObject>();
		Arguments->SetStringField(TEXT("Query"), TEXT("KismetSystemLibrary"));
		Arguments->SetNumberField(TEXT("MaxBlueprints"), BenchmarkBlueprintCount);
		RunSearch(State, Arguments, ZorvekMCPBridgeBlueprintProjectSearch::DefaultLimit);
	}
}

BENCHMARK(BM_SearchNamesOnly)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SearchContentOneFolder)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SearchContentDefaultCap)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SearchContentWholeProject)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SearchContentManyHits)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadSnapshotsOnly)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
