// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Previewer.h"

#include <memory>

// The previewers of the kinds in Generator/kinds/. PreviewerFactory.cpp calls these only when
// that folder is part of the build (TOLVANE_GENERATOR_HAS_KINDS).
namespace Preview::Kinds {

std::unique_ptr<Previewer> createInDesignPreviewer(); // .indd, .indt
std::unique_ptr<Previewer> createInterchangePreviewer(); // .inx and .idml
std::unique_ptr<Previewer> createFreeHandPreviewer();
std::unique_ptr<Previewer> createSwatchExchangePreviewer();

}
