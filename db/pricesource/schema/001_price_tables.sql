-- The alternate price source: a database of price tables alone, read over the session's
-- alternate connection when the host asks for it. Its names differ from the pharmacy
-- database's: PriceTableKey holds the key rows, PriceTable the bands.

-- One key row per table. AWP 0 prices from the cost, any other value from the AWP;
-- BreakOnQty not 0 (and not null) picks the band by quantity.
CREATE TABLE PriceTableKey (
    PriceTableID @INT@ NOT NULL PRIMARY KEY,
    AWP @SMALLINT@,
    BreakOnQty @SMALLINT@
);

-- The bands of a table in order of BreakPoint: each covers the amounts from the break
-- point before it up to but not including its own.
CREATE TABLE PriceTable (
    PriceTableID @INT@ NOT NULL,
    BreakPoint @DOUBLE@ NOT NULL,
    MarkUpMultiplier @DOUBLE@,
    MarkUpAddend @DOUBLE@,
    PRIMARY KEY (PriceTableID, BreakPoint)
);
