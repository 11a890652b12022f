/* What GCC's unwinder asks of the C library, which musl has not got: the part of the program that an address is in. */
#define _GNU_SOURCE
#include <link.h>
#include <stddef.h>

struct dl_find_object {
    unsigned long long flags;
    void* start;
    void* end;
    struct link_map* map;
    void* eh_frame_header;
    unsigned long long reserved[7];
};

struct search {
    ElfW(Addr) address;
    struct dl_find_object* found;
};

static int look(struct dl_phdr_info* part, size_t size, void* data)
{
    const struct search* const search = data;
    void* header = NULL;
    int inside = 0;
    (void)size;
    for (int i = 0; i < part->dlpi_phnum; ++i) {
        const ElfW(Phdr)* const segment = &part->dlpi_phdr[i];
        const ElfW(Addr) start = part->dlpi_addr + segment->p_vaddr;
        if (segment->p_type == PT_GNU_EH_FRAME) header = (void*)start;
        if (segment->p_type != PT_LOAD || search->address < start || search->address - start >= segment->p_memsz) continue;
        inside = 1;
        search->found->start = (void*)start;
        search->found->end = (void*)(start + segment->p_memsz);
    }
    search->found->eh_frame_header = header;
    return inside && header != NULL;
}

int _dl_find_object(void* address, struct dl_find_object* found)
{
    struct search search = {(ElfW(Addr))address, found};
    *found = (struct dl_find_object){0};
    return dl_iterate_phdr(look, &search) ? 0 : -1;
}
