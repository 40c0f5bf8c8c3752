#pragma once

/// What GET /gallery shows as long as there are no pictures: a button that has them made, and how far it is.
extern const char* const kGalleryPage;
