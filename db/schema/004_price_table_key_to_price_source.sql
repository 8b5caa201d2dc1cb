-- PriceTableKey is the key table of the alternate price source, whose band table is named
-- PriceTable like this database's key table. The alternate source has a schema of its
-- own now (db/pricesource), and pricing never reads PriceTableKey here.
DROP TABLE PriceTableKey;
