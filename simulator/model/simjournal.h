#ifndef SIMJOURNAL_H
#define SIMJOURNAL_H

#include "controlprotocol.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The record of all requests: entries one after the other in memory of the caller's. An entry that
 * finds no room any more is counted as lost, and so is every later one: what there is stays free
 * of gaps. */
typedef struct SimJournal {
    uint8_t *storage;
    uint32_t capacity;
    uint32_t used;
    uint32_t pending; /* length of the entry being written, 0 when there is none or no room */
    uint32_t entries;
    uint32_t lost;
} SimJournal;

/* `storage` is aligned to 8 bytes. */
void journal_init(SimJournal *journal, void *storage, uint32_t capacity);
void journal_clear(SimJournal *journal);

/* An entry is begun, given its payload piece by piece, and ended. Its number, size and payload
 * length are filled in. */
void journal_begin(SimJournal *journal, const VesmoraSimEntry *entry);
void journal_add(SimJournal *journal, const void *payload, uint32_t length);
void journal_end(SimJournal *journal, uint32_t status, uint32_t answer);

/* Fills a page with as many whole entries as fit, from the given number on, and stores its length.
 * SIM_BUFFER_TOO_SMALL when there are entries but not even one fits. */
uint32_t journal_read(const SimJournal *journal, uint32_t number, uint8_t *page, uint32_t capacity,
                      uint32_t *length);

#ifdef __cplusplus
}
#endif

#endif
