// Ticker, game-thread tasks, configuration and console commands as the module uses them.
#include "ZorvekTestSupport.h"

#include "Async/Async.h"
#include "Containers/Ticker.h"
#include "HAL/IConsoleManager.h"
#include "Misc/ConfigCacheIni.h"

#include <atomic>
#include <thread>

TEST(CompatTicker, DelayAccumulatesOverTicksAndFalseRemovesTheTicker)
{
	FTSTicker Ticker;
	int32 Calls = 0;
	Ticker.AddTicker(FTickerDelegate::CreateLambda([&Calls](float) { ++Calls; return false; }), 0.1f);
	Ticker.Tick(0.05f);
	EXPECT_EQ(Calls, 0);
	Ticker.Tick(0.06f);
	EXPECT_EQ(Calls, 1);
	Ticker.Tick(1.0f);
	EXPECT_EQ(Calls, 1);
	EXPECT_LT(Ticker.GetSecondsUntilNextFire(), 0.0);
}

TEST(CompatTicker, RepeatingTickersFireOncePerTickAndCanBeRemoved)
{
	FTSTicker Ticker;
	int32 Calls = 0;
	const FTSTicker::FDelegateHandle Handle = Ticker.AddTicker(FTickerDelegate::CreateLambda([&Calls](float) { ++Calls; return true; }), 0.0f);
	Ticker.Tick(0.01f);
	Ticker.Tick(0.01f);
	EXPECT_EQ(Calls, 2);
	FTSTicker::RemoveTicker(Handle);
	Ticker.Tick(0.01f);
	EXPECT_EQ(Calls, 2);
	EXPECT_FALSE(Handle.IsValid());
}

TEST(CompatGameThread, TasksFromOtherThreadsRunInOrderWhenTheGameThreadPumps)
{
	ASSERT_TRUE(IsInGameThread());
	std::atomic<bool> bOtherThreadWasGameThread{true};
	TArray<int32> Order;
	std::thread Producer([&]()
	{
		bOtherThreadWasGameThread = IsInGameThread();
		for (int32 Index = 0; Index < 3; ++Index)
		{
			AsyncTask(ENamedThreads::GameThread, [&Order, Index]() { Order.Add(Index); });
		}
	});
	Producer.join();
	EXPECT_FALSE(bOtherThreadWasGameThread);
	EXPECT_TRUE(Order.IsEmpty());
	EXPECT_EQ(FGameThreadTaskQueue::Get().ProcessPendingTasks(), 3);
	EXPECT_EQ(Order, (TArray<int32>{0, 1, 2}));
}

TEST(CompatConfig, MissingKeysLeaveTheDefaultAndValuesParseAsTheEngineDoes)
{
	const FString File(TEXT("CompatConfigTest"));
	ASSERT_TRUE(GConfig->LoadFromText(File, TEXT("[ZorvekMCPBridge]\nbAutoStart=False\nName=\"Quoted\"\n; comment\n[Other]\n+List=a\n+List=b\n")));
	bool bValue = true;
	EXPECT_TRUE(GConfig->GetBool(TEXT("ZorvekMCPBridge"), TEXT("bAutoStart"), bValue, File));
	EXPECT_FALSE(bValue);
	bool bUntouched = true;
	EXPECT_FALSE(GConfig->GetBool(TEXT("ZorvekMCPBridge"), TEXT("Missing"), bUntouched, File));
	EXPECT_TRUE(bUntouched);
	FString Name;
	EXPECT_TRUE(GConfig->GetString(TEXT("zorvekmcpbridge"), TEXT("name"), Name, File));
	EXPECT_TRUE(Name.Equals(TEXT("Quoted")));
	TArray<FString> List;
	EXPECT_EQ(GConfig->GetArray(TEXT("Other"), TEXT("List"), List, File), 2);
	EXPECT_FALSE(GConfig->LoadFromText(File, TEXT("NoSection=1")));
	GConfig->Clear(File);
}

TEST(CompatConsole, AutoCommandsRegisterForTheirLifetime)
{
	FLogCapture Log;
	int32 Calls = 0;
	TArray<FString> SeenArgs;
	{
		FAutoConsoleCommand Command(TEXT("Compat.Test"), TEXT("Help"), FConsoleCommandDelegate::CreateLambda([&Calls]() { ++Calls; }));
		FAutoConsoleCommand WithArgs(TEXT("Compat.Args"), TEXT("Help"), FConsoleCommandWithArgsDelegate::CreateLambda([&SeenArgs](const TArray<FString>& Args) { SeenArgs = Args; }));
		EXPECT_NE(IConsoleManager::Get().FindConsoleObject(TEXT("compat.test")), nullptr);
		EXPECT_TRUE(IConsoleManager::Get().ProcessUserConsoleInput(TEXT("Compat.Test"), *GLog, nullptr));
		EXPECT_TRUE(IConsoleManager::Get().ProcessUserConsoleInput(TEXT("  compat.args one  two "), *GLog, nullptr));
	}
	EXPECT_EQ(Calls, 1);
	EXPECT_EQ(SeenArgs, (TArray<FString>{TEXT("one"), TEXT("two")}));
	EXPECT_EQ(IConsoleManager::Get().FindConsoleObject(TEXT("Compat.Test")), nullptr);
	EXPECT_FALSE(IConsoleManager::Get().ProcessUserConsoleInput(TEXT("Compat.Test"), *GLog, nullptr));
}

TEST(CompatLogging, VerbosityFiltersAndReachesOutputDevices)
{
	FLogCapture Log;
	UE_LOG(LogTemp, Display, TEXT("shown %d"), 1);
	UE_LOG(LogTemp, Verbose, TEXT("hidden"));
	EXPECT_EQ(Log.VerbosityOf(TEXT("shown 1")), ELogVerbosity::Display);
	EXPECT_FALSE(Log.Contains(TEXT("hidden")));
}
