// Compiled by RunFenceProbes.cmake once per ZORVEK_PROBE value, never linked. Each probe is one
// line a plug-in file might write; the script states which must fail to compile in the
// plug-in's files (with the fence on) and which the host's own files may still use.
#include "CoreMinimal.h"
#include "Async/Async.h"
#include "Containers/StringConv.h"
#include "Containers/Ticker.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/Paths.h"
#include "Templates/UniquePtr.h"

#include <string>

void Probe()
{
	FString Text(TEXT("Zorvek"));
	(void)Text;
#if ZORVEK_PROBE == 0
	// What the engine has: always compiles.
	const FName Name(Text);
	const FStringView View(Text);
	TUniquePtr<int32> Owned = MakeUnique<int32>(1);
	(void)Name;
	(void)View.Len();
	(void)Owned.Get();
	(void)FTCHARToUTF8(*Text).Length();
#elif ZORVEK_PROBE == 1
	const FString FromStd(std::u16string(u"x"));
#elif ZORVEK_PROBE == 2
	(void)Text.GetStorage();
#elif ZORVEK_PROBE == 3
	(void)UECompatToUtf8(Text);
#elif ZORVEK_PROBE == 4
	FPaths::SetProjectDirForHost(Text);
#elif ZORVEK_PROBE == 5
	FGameThreadTaskQueue::Get().ProcessPendingTasks();
#elif ZORVEK_PROBE == 6
	(void)FTSTicker::GetCoreTicker().GetSecondsUntilNextFire();
#elif ZORVEK_PROBE == 7
	GConfig->LoadFromText(GEngineIni, Text);
#elif ZORVEK_PROBE == 8
	UECompatSetRunningCommandlet(true);
#elif ZORVEK_PROBE == 9
	const std::u16string_view StdView = FStringView(Text);
	(void)StdView;
// From here on, shapes the engine does not have at all: they fail in every file.
#elif ZORVEK_PROBE == 10
	const FName Implicit = Text;
	(void)Implicit;
#elif ZORVEK_PROBE == 11
	(void)FStringView(Text).size();
#elif ZORVEK_PROBE == 12
	TUniquePtr<int32> Owned = MakeUnique<int32>(1);
	(void)Owned.get();
#elif ZORVEK_PROBE == 13
	TSharedPtr<int32> Shared = MakeShared<int32>(1);
	(void)Shared.GetStdPointer();
#elif ZORVEK_PROBE == 14
	const TCHAR* Format = TEXT("%d");
	(void)FString::Printf(Format, 1);
#endif
}
