#pragma once

#include "core/inspection/documentoutline.h"
#include "core/inspection/picturelist.h"

#include <functional>

class PageView;

// Reads what page inspection shows from the page of a view: one script run each, in the
// program's isolated world, that collects plain strings and numbers; no page code runs.
namespace PageInspector {

void pictures(PageView *view, const std::function<void(const PictureList::Page &)> &done);
void structure(PageView *view, const std::function<void(const DocumentOutline &)> &done);

} // namespace PageInspector
