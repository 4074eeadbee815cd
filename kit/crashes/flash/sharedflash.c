// SPDX-License-Identifier: MIT
// NAND flash in memory that a virtual machine shares with the one it runs on: what was programmed is
// there, and in the right order, even if the machine is stopped for good the next moment.
#include <linux/io.h>
#include <linux/module.h>
#include <linux/mtd/mtd.h>
#include <linux/pci.h>

enum {
    programmed_together = 2048, // bytes
    erased_together = 131072,
    memory_bar = 2
};

static int flash_erase(struct mtd_info *flash, struct erase_info *erase)
{
    memset(flash->priv + erase->addr, 0xff, erase->len);
    return 0;
}

static int flash_read(struct mtd_info *flash, loff_t from, size_t length, size_t *done, u_char *to)
{
    memcpy(to, flash->priv + from, length);
    *done = length;
    return 0;
}

/// Only erasing sets a bit again.
static int flash_program(struct mtd_info *flash, loff_t to, size_t length, size_t *done, const u_char *from)
{
    u_char *memory = flash->priv + to;

    for (*done = 0; *done < length; ++*done)
        memory[*done] &= from[*done];
    return 0;
}

static int flash_start(struct pci_dev *device, const struct pci_device_id *id)
{
    const resource_size_t size = pci_resource_len(device, memory_bar);
    struct mtd_info *flash = devm_kzalloc(&device->dev, sizeof(*flash), GFP_KERNEL);
    const int failed = pci_enable_device(device);

    if (failed || !flash)
        return failed ? failed : -ENOMEM;
    flash->priv = devm_memremap(&device->dev, pci_resource_start(device, memory_bar), size, MEMREMAP_WB);
    if (IS_ERR(flash->priv))
        return PTR_ERR(flash->priv);
    flash->name = pci_name(device);
    flash->type = MTD_NANDFLASH;
    flash->flags = MTD_CAP_NANDFLASH;
    flash->size = size;
    flash->erasesize = erased_together;
    flash->writesize = flash->writebufsize = programmed_together;
    flash->owner = THIS_MODULE;
    flash->_erase = flash_erase;
    flash->_read = flash_read;
    flash->_write = flash_program;
    return mtd_device_register(flash, NULL, 0);
}

static const struct pci_device_id devices[] = {{PCI_DEVICE(0x1af4, 0x1110)}, {}}; // QEMU's ivshmem

static struct pci_driver flash_driver = {.name = "sharedflash", .id_table = devices, .probe = flash_start};

builtin_pci_driver(flash_driver); // it stays

MODULE_DESCRIPTION("NAND flash in memory that is shared with the other side");
MODULE_LICENSE("Dual MIT/GPL");
