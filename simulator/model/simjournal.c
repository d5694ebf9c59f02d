#include "simjournal.h"

#include "bytes.h"
#include "simstatus.h"

static VesmoraSimEntry *entry_at(const SimJournal *journal, uint32_t offset)
{
    return (VesmoraSimEntry *)(void *)(journal->storage + offset);
}

void journal_init(SimJournal *journal, void *storage, uint32_t capacity)
{
    journal->storage = (uint8_t *)storage;
    journal->capacity = capacity;
    journal_clear(journal);
}

void journal_clear(SimJournal *journal)
{
    journal->used = 0;
    journal->pending = 0;
    journal->entries = 0;
    journal->lost = 0;
}

static int has_room(const SimJournal *journal, uint32_t length)
{
    /* Kept a multiple of 8, so that the padding of an entry that fits fits too. */
    const uint32_t usable = journal->capacity & ~7u;
    return length <= usable - journal->used - journal->pending;
}

void journal_begin(SimJournal *journal, const VesmoraSimEntry *entry)
{
    journal->pending = 0;
    if (journal->lost != 0 || !has_room(journal, sizeof *entry)) {
        ++journal->lost;
        return;
    }
    bytes_copy(entry_at(journal, journal->used), entry, sizeof *entry);
    journal->pending = sizeof *entry;
}

void journal_add(SimJournal *journal, const void *payload, uint32_t length)
{
    if (journal->pending == 0)
        return;
    if (!has_room(journal, length)) {
        journal->pending = 0;
        ++journal->lost;
        return;
    }
    bytes_copy(journal->storage + journal->used + journal->pending, payload, length);
    journal->pending += length;
}

void journal_end(SimJournal *journal, uint32_t status, uint32_t answer)
{
    if (journal->pending == 0)
        return;
    VesmoraSimEntry *entry = entry_at(journal, journal->used);
    entry->payloadLength = journal->pending - (uint32_t)sizeof *entry;
    entry->size = (journal->pending + 7u) & ~7u;
    entry->number = ++journal->entries;
    entry->status = status;
    entry->answer = answer;
    bytes_clear(journal->storage + journal->used + journal->pending,
                entry->size - journal->pending);
    journal->used += entry->size;
    journal->pending = 0;
}

uint32_t journal_read(const SimJournal *journal, uint32_t number, uint8_t *page, uint32_t capacity,
                      uint32_t *length)
{
    VesmoraSimPage head = {0, journal->lost};
    uint32_t filled = sizeof head;
    if (capacity < filled)
        return SIM_BUFFER_TOO_SMALL;
    for (uint32_t offset = 0; offset < journal->used; offset += entry_at(journal, offset)->size) {
        const VesmoraSimEntry *entry = entry_at(journal, offset);
        if (entry->number < number)
            continue;
        if (entry->size > capacity - filled)
            break;
        bytes_copy(page + filled, entry, entry->size);
        filled += entry->size;
        ++head.count;
    }
    if (head.count == 0 && number <= journal->entries)
        return SIM_BUFFER_TOO_SMALL;
    bytes_copy(page, &head, sizeof head);
    *length = filled;
    return SIM_SUCCESS;
}
