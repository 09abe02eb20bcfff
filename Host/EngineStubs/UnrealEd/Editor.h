#pragma once

#include "CoreMinimal.h"
#include "Editor/EditorEngine.h"

extern UEditorEngine* GEditor;
