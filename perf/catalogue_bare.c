// perf-catalogue-bare FOLDER: what a scan of a card's recordings costs at least: their names, times, trailers and
// headers, the oldest first. Prints the milliseconds and a sum of what it read.
#include <dirent.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

struct recording {
  char name[32];
  struct timespec modified;
  unsigned seconds;
  char trailer[4];
};

static int compare(const void* left, const void* right) {
  const struct recording* a = left;
  const struct recording* b = right;
  if (a->modified.tv_sec != b->modified.tv_sec) return a->modified.tv_sec < b->modified.tv_sec ? -1 : 1;
  if (a->modified.tv_nsec != b->modified.tv_nsec) return a->modified.tv_nsec < b->modified.tv_nsec ? -1 : 1;
  return strcmp(b->name, a->name);
}

static unsigned word(const char* bytes) {
  unsigned value;
  memcpy(&value, bytes, sizeof value);
  return value;
}

int main(int argc, char** argv) {
  struct timespec start, end;
  clock_gettime(CLOCK_MONOTONIC, &start);
  DIR* folder = argc == 2 ? opendir(argv[1]) : NULL;
  if (folder == NULL) return 1;
  struct recording* all = NULL;
  size_t count = 0, room = 0;
  for (const struct dirent* entry; (entry = readdir(folder)) != NULL;) {
    if (strlen(entry->d_name) != 24) continue;
    if (count == room) all = realloc(all, (room = room * 2 + 1024) * sizeof *all);
    struct recording* recording = &all[count];
    struct stat status;
    char head[144];
    const int file = openat(dirfd(folder), entry->d_name, O_RDWR | O_CLOEXEC);
    if (file < 0) continue;
    fstat(file, &status);
    if (pread(file, recording->trailer, 4, status.st_size - 4) == 4 &&
        pread(file, head, sizeof head, 0) == sizeof head && memcmp(head, "RIFF", 4) == 0 && word(head + 132) != 0) {
      memcpy(recording->name, entry->d_name, 25);
      recording->modified = status.st_mtim;
      recording->seconds = word(head + 140) / word(head + 132);
      ++count;
    }
    close(file);
  }
  closedir(folder);
  qsort(all, count, sizeof *all, compare);
  clock_gettime(CLOCK_MONOTONIC, &end);
  unsigned sum = 0;
  for (size_t i = 0; i < count; ++i) sum += all[i].seconds + (unsigned char)all[i].trailer[1];
  printf("%.3f %u\n", (double)(end.tv_sec - start.tv_sec) * 1e3 + (double)(end.tv_nsec - start.tv_nsec) / 1e6, sum);
  return 0;
}
