#pragma once

#include "Containers/UnrealString.h"

class FConfigCacheIni;
class FOutputDeviceError;

extern FConfigCacheIni* GConfig;
// Declared only: nothing on the host reports fatal errors through it.
extern FOutputDeviceError* GError;
extern FString GEngineIni;
extern FString GEditorIni;
extern FString GEditorPerProjectIni;
extern FString GGameIni;
extern bool GIsEditor;
extern bool GExitPurge;
extern uint32 GGameThreadId;

bool IsInGameThread();
bool IsEngineExitRequested();
void RequestEngineExit(const TCHAR* ReasonString);
void RequestEngineExit(const FString& ReasonString);
bool IsRunningCommandlet();
// Host: makes the process count as a commandlet (a cook, a resave) or as the editor again.
UE_COMPAT_HOST_ONLY void UECompatSetRunningCommandlet(bool bRunningCommandlet);
