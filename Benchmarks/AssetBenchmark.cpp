// Asset resolution over a large registry and property export of a large object, on the simulated
// editor. Resolution walks the registry once; inspection is meant to be bounded by the reply's
// limits (200 properties, 50 array items), not by the size of the object.
#include "Assets/ZorvekMCPBridgeAssetResolver.h"
#include "Assets/ZorvekMCPBridgePropertyExport.h"
#include "SimulatedEditorPort.h"

#include <benchmark/benchmark.h>

namespace
{
	constexpr int32 RegistrySize = 100000;

	// 100,000 registry entries in 1,000 folders; the class of every tenth is Blueprint.
	FSimulatedEditorPort& GetLargeRegistry()
	{
		static TSharedPtr<FSimulatedEditorPort> Port = []()
		{
			TSharedPtr<FSimulatedEditor> Editor = MakeShared<FSimulatedEditor>();
			for (int32 Index = 0; Index < RegistrySize; ++Index)
			{
				FZorvekMCPBridgeAssetData Asset;
				Asset.PackagePath = FString::Printf(TEXT("/Game/Environment/Zone%03d"), Index / 100);
				Asset.AssetName = FString::Printf(TEXT("SM_Prop_%06d"), Index);
				Asset.PackageName = Asset.PackagePath + TEXT("/") + Asset.AssetName;
				Asset.ObjectPath = Asset.PackageName + TEXT(".") + Asset.AssetName;
				Asset.AssetClassPath = Index % 10 == 0 ? TEXT("/Script/Engine.Blueprint") : TEXT("/Script/Engine.StaticMesh");
				Editor->AddRegistryEntry(Asset);
			}
			return TSharedPtr<FSimulatedEditorPort>(MakeShared<FSimulatedEditorPort>(Editor));
		}();
		return *Port;
	}

	void Resolve(benchmark::State& State, const TCHAR* Query, const TCHAR* Type, int32 ExpectedCount)
	{
		FSimulatedEditorPort& Port = GetLargeRegistry();
		for (auto _ : State)
		{
			FString BestPath;
			FString Error;
			const TSharedPtr<FJsonObject> Resolution = ZorvekMCPBridgeAssets::ResolveAssetQuery(Port.GetAssetRegistry(), Query, Type, 10, BestPath, Error);
			benchmark::DoNotOptimize(Resolution);
			if (Resolution->GetIntegerField(TEXT("count")) != ExpectedCount)
			{
				State.SkipWithError("unexpected candidate count");
				break;
			}
		}
	}

	// The first ten candidates sit at the start of the registry: the walk stops there.
	void BM_ResolveFirstMatchesEarly(benchmark::State& State)
	{
		Resolve(State, TEXT("sm_prop_0000"), TEXT("Any"), 10);
	}

	// One candidate, the last entry: the whole registry is walked.
	void BM_ResolveLastMatch(benchmark::State& State)
	{
		Resolve(State, TEXT("SM_Prop_099999"), TEXT("Any"), 1);
	}

	// No candidate: the whole registry is walked and every name and package compared.
	void BM_ResolveNoMatch(benchmark::State& State)
	{
		Resolve(State, TEXT("T_Missing"), TEXT("Any"), 0);
	}

	void BM_ResolveNoMatchBlueprintFilter(benchmark::State& State)
	{
		Resolve(State, TEXT("T_Missing"), TEXT("Blueprint"), 0);
	}

	// One data asset class with 1,000 editable integer properties, one array of ArraySize
	// integers and one array of 50.
	struct FLargeObject
	{
		TSharedPtr<FSimulatedEditorPort> Port;
		FZorvekMCPBridgeObjectHandle Object;
	};

	FLargeObject MakeLargeObject(int32 ArraySize)
	{
		TSharedPtr<FSimulatedEditor> Editor = MakeShared<FSimulatedEditor>();
		FString Error;
		FSimulatedType* Class = Editor->AddClass(TEXT("/Script/Bench.Wide"), FString(), 0, Error);
		Editor->AddProperty(Class, TEXT("Samples"), TEXT("array:int32"), 0x1, Error);
		Editor->AddProperty(Class, TEXT("ShortSamples"), TEXT("array:int32"), 0x1, Error);
		for (int32 Index = 0; Index < 1000; ++Index)
		{
			Editor->AddProperty(Class, FString::Printf(TEXT("Value%04d"), Index), TEXT("int32"), 0x1 | 0x4, Error);
		}
		FSimulatedObject* Object = Editor->CreateObject(Class, Editor->FindOrCreatePackage(TEXT("/Game/Bench/Wide")), TEXT("Wide"), Error);
		Object->Values[0].Items.resize((size_t)ArraySize);
		Object->Values[1].Items.resize(50);
		FLargeObject Large;
		Large.Port = MakeShared<FSimulatedEditorPort>(Editor);
		Large.Object = FSimulatedEditorPort::ToHandle(Object);
		return Large;
	}

	void BM_ExportObjectProperties(benchmark::State& State)
	{
		const FLargeObject Large = MakeLargeObject(50);
		const int32 Limit = (int32)State.range(0);
		for (auto _ : State)
		{
			TArray<TSharedPtr<FJsonValue>> References;
			TArray<TSharedPtr<FJsonValue>> Failures;
			benchmark::DoNotOptimize(ZorvekMCPBridgeAssets::ExportObjectProperties(*Large.Port, Large.Object, Limit, References, Failures));
		}
	}

	// The value export of one array: 50 items whatever the array's length.
	void BM_ExportArrayValue(benchmark::State& State)
	{
		const FLargeObject Large = MakeLargeObject((int32)State.range(0));
		const FZorvekMCPBridgePropertyCursor Samples = Large.Port->GetReflection().FindProperty(Large.Object, TEXT("Samples"));
		for (auto _ : State)
		{
			benchmark::DoNotOptimize(ZorvekMCPBridgeAssets::ExportPropertyValueJson(*Large.Port, Samples, 0, ZorvekMCPBridgeAssets::MaxExportedStructDepth));
		}
	}

	// The flat export carries the engine's full export text of each property, so a long array
	// costs its length there.
	void BM_ExportArrayText(benchmark::State& State)
	{
		const FLargeObject Large = MakeLargeObject((int32)State.range(0));
		const FZorvekMCPBridgePropertyCursor Samples = Large.Port->GetReflection().FindProperty(Large.Object, TEXT("Samples"));
		for (auto _ : State)
		{
			FString Text;
			Samples.ExportText(Text);
			benchmark::DoNotOptimize(Text);
		}
	}
}

BENCHMARK(BM_ResolveFirstMatchesEarly)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ResolveLastMatch)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ResolveNoMatch)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ResolveNoMatchBlueprintFilter)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ExportObjectProperties)->Arg(200)->Arg(0)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ExportArrayValue)->Arg(50)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ExportArrayText)->Arg(50)->Arg(10000)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
